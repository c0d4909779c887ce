#pragma once

#include "platform/linux/toolkit/Pages.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zm {

/** Texts that are longer than their place and run through it once, so that all of them can be read. */
class RunningTitles {
public:
    explicit RunningTitles(Pages& pages) : m_pages(pages) {}

    /** Takes up the texts whose style lets them run; after the pages have been redefined. */
    void collect();
    /** None is under way any more; those that are shown have had their turn. */
    void rest();
    /** Whether one runs or waits for its turn. */
    bool busy() const;
    void step(int64_t nowMs);
    /** How far the text has run, in pixels; 0 for one that does not. */
    double offset(const Item& item) const;

private:
    struct Run {
        std::string text; ///< the one that runs, or has run
        int64_t start = -1;
        bool over = true;
        double offset = 0;
    };
    bool waits(const Item& item, const Run& run) const;

    Pages& m_pages;
    std::map<const Item*, Run> m_runs;
};

} // namespace zm
