#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace zm::test {

/** What a reader of an image goes by: a descriptor, a folder, a table, a line. */
struct Structure {
    size_t begin = 0;
    size_t size = 0;
};

/** A small image of a disc that is right, and what in it is no mere contents. */
struct SmallImage {
    std::string opened;  ///< the path that is inserted
    std::string damaged; ///< the file whose structures these are
    std::vector<Structure> structures;
};

/** A kind of image, and how it is made in a folder of its own. */
struct ImageForm {
    const char* name;
    SmallImage (*make)(const std::string& folder);
    /** Whether what it says of its files is secured by sums: damaged, it is never taken for something else. */
    bool secured = false;
};
std::ostream& operator<<(std::ostream& out, const ImageForm& form);

/** All kinds of images that are read. */
const std::vector<ImageForm>& imageForms();

} // namespace zm::test
