#pragma once

#include "platform/linux/toolkit/Pages.h"
#include "platform/linux/toolkit/TextPool.h"
#include "zmui/CUI_BtList.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/**
 * Rows, selection and scroll position of a list control. Rows cost their text and four picture numbers,
 * wherever they stand; only rows in view are ever drawn or laid out.
 */
struct CUI_BtList::Impl {
    static constexpr int slots = 4;
    static constexpr size_t kindSlot = 0; ///< of the row's picture
    static constexpr size_t markSlot = 2; ///< of the mark of what plays
    static constexpr int noPicture = -1;  ///< nothing was ever put into the slot

    struct Row {
        zm::TextPool::Place text; ///< in `texts`
        std::array<int32_t, slots> icons{noPicture, noPicture, noPicture, noPicture};
    };

    Impl(zm::Pages& owner, zm::Item& listItem) : pages(owner), item(listItem) {}

    zm::Pages& pages;
    zm::Item& item;
    std::vector<Row> rows;
    zm::TextPool texts;
    int current = -1;
    double scroll = 0; ///< pixels between the top of row 0 and the top of the view

    /** The scroll bar's width, and its distance from the rows; on the screen that pages are written for. */
    static constexpr int barWidth = 8;

    bool has(int index) const { return index >= 0 && index < static_cast<int>(rows.size()); }
    std::string text(const Row& row) const { return std::string(texts.at(row.text)); }
    void setText(Row& row, const wchar_t* text);
    double rowHeight() const;
    /** The row at the top of the view; the nearest one while the list moves. */
    int top() const;
    /** Scroll position that has the last row at the bottom. */
    double end() const;
    /** Where a row stands on the screen; it may lie outside the list. */
    zm::Rect rowRect(int index) const;
    /** What is drawn of it: beside the scroll bar, without the gap to the next one. */
    zm::Rect faceRect(int index) const;
    /** Where a row has the mark of what plays. */
    zm::Rect markRect(int index) const;
    /** The row at a point of the screen, or -1. */
    int rowAt(int x, int y) const;
    void drawRow(int index);
    void drawList();
    /** Shows what stands in the place of rows exactly while there are none. */
    void showEmptiness();
    void select(int index);
    /** Scrolls between the ends and draws. */
    void scrollTo(double position, double furthest);

    /** Layouts of the rows that were drawn last. */
    struct KeptRow {
        int index;
        zm::KeptLayout kept;
    };
    std::vector<KeptRow> keptRows;

    bool moving = false;  ///< dragged or flung
    zm::KeptLayout place; ///< of the number that is shown meanwhile
};
