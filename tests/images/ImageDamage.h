#pragma once

#include "tests/images/SmallImages.h"

#include <random>
#include <string>

namespace zm::test {

/** Other bytes in one place of an image, or its end. */
struct Damage {
    size_t begin = 0;
    std::string bytes;
    bool cut = false; ///< the image ends at `begin`
};

/** A way to damage a structure; the same for the same state of `random`. */
struct DamageKind {
    const char* name;
    Damage (*make)(const std::string& image, const SmallImage& form, const Structure& structure,
                   std::minstd_rand& random);
    int seeds = 1;       ///< how often it makes something else
    bool sealed = false; ///< what it makes is right by its own sums
};

const std::vector<DamageKind>& damageKinds();

/** An image that is damaged for as long as this lives. */
class WhileDamaged {
public:
    WhileDamaged(const std::string& file, const std::string& whole, const Damage& damage);
    ~WhileDamaged();
    WhileDamaged(const WhileDamaged&) = delete;
    WhileDamaged& operator=(const WhileDamaged&) = delete;

private:
    std::string m_file;
    const std::string& m_whole;
    Damage m_damage;
};

} // namespace zm::test
