#include "platform/linux/toolkit/ListControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

using zm::Rect;

void CUI_BtList::Impl::setText(Row& row, const wchar_t* text) {
    texts.drop(row.text);
    row.text = texts.add(text);
    if (texts.wasteful()) {
        zm::TextPool packed;
        for (Row& each : rows) {
            each.text = packed.take(texts, each.text);
        }
        texts = std::move(packed);
    }
}

double CUI_BtList::Impl::rowHeight() const {
    return static_cast<double>(item.spec.rect.h) / pages.style(item).rows;
}

int CUI_BtList::Impl::top() const {
    return static_cast<int>(std::lround(scroll / rowHeight()));
}

double CUI_BtList::Impl::end() const {
    return std::max(0.0, static_cast<double>(rows.size()) * rowHeight() - item.spec.rect.h);
}

Rect CUI_BtList::Impl::rowRect(int index) const {
    const Rect& view = item.spec.rect;
    const int above = static_cast<int>(std::lround(index * rowHeight() - scroll));
    const int below = static_cast<int>(std::lround((index + 1) * rowHeight() - scroll));
    return {view.x, view.y + above, view.w, below - above};
}

Rect CUI_BtList::Impl::faceRect(int index) const {
    const Rect row = rowRect(index);
    const int wide = row.w - 2 * pages.pixels(barWidth);
    return {pages.rightToLeft() ? row.x + row.w - wide : row.x, row.y, wide,
            row.h - pages.style(item).rowGap};
}

Rect CUI_BtList::Impl::markRect(int index) const {
    const zm::Style& style = pages.style(item);
    const Rect face = faceRect(index);
    const int icon = style.iconSize;
    return {pages.rightToLeft() ? face.x + style.padding : face.x + face.w - style.padding - icon,
            face.y + (face.h - icon) / 2, icon, icon};
}

int CUI_BtList::Impl::rowAt(int x, int y) const {
    if (!item.spec.rect.contains(x, y)) {
        return -1;
    }
    const int index = static_cast<int>(std::floor((y - item.spec.rect.y + scroll) / rowHeight()));
    return has(index) ? index : -1;
}

void CUI_BtList::Impl::drawRow(int index) {
    // Nearly every row of a long list that is filled lies outside the view, by more than rounding could
    // matter. In parts of a pixel, as many as rows are in view, so that nothing has to be divided.
    const double rowsInView = pages.style(item).rows;
    const double height = item.spec.rect.h;
    const double above = index * height - scroll * rowsInView;
    const bool nearView = above < (rowsInView + 1) * height && above > -2 * height;
    if (nearView && item.onPage()) {
        pages.damage(item.window, rowRect(index).intersected(item.spec.rect));
    }
}

void CUI_BtList::Impl::drawList() {
    if (item.onPage()) {
        pages.damage(item.window, item.spec.rect);
    }
}

void CUI_BtList::Impl::showEmptiness() {
    for (zm::Item* child : item.children) {
        if (child->spec.whileEmpty && child->set.visible != rows.empty()) {
            child->set.visible = child->drawn.visible = rows.empty();
            pages.damage(item.window, child->bounds());
        }
    }
}

void CUI_BtList::Impl::select(int index) {
    const int before = current;
    current = index;
    if (before != index) {
        drawRow(before);
        drawRow(index);
    }
}

void CUI_BtList::Impl::scrollTo(double position, double furthest) {
    const double wanted = std::clamp(position, 0.0, furthest);
    if (wanted != scroll) {
        scroll = wanted;
        drawList();
    }
}

CUI_BtList::CUI_BtList(std::unique_ptr<Impl> impl) : m_pImpl(std::move(impl)) {}
CUI_BtList::~CUI_BtList() = default;

int CUI_BtList::GetItemCount() {
    return static_cast<int>(m_pImpl->rows.size());
}

bool CUI_BtList::InsertItem(int index, int) {
    const int count = GetItemCount();
    if (index < 0 || index > count) {
        return false;
    }
    m_pImpl->rows.insert(m_pImpl->rows.begin() + index, Impl::Row{});
    if (index <= m_pImpl->current) {
        ++m_pImpl->current;
    }
    m_pImpl->item.dirty = true;
    if (count == 0) {
        m_pImpl->showEmptiness();
    }
    return true;
}

bool CUI_BtList::DeleteAllItems() {
    m_pImpl->rows.clear();
    m_pImpl->texts.clear();
    m_pImpl->keptRows.clear();
    m_pImpl->current = -1;
    m_pImpl->scroll = 0;
    m_pImpl->drawList();
    m_pImpl->showEmptiness();
    return true;
}

bool CUI_BtList::SetItemICon(int index, int icon, int state, int slot, int redraw) {
    const bool pictureKnown = icon == 0 || m_pImpl->pages.resource().pictures.contains(icon);
    const bool stateKnown = state >= zm::StatePressed && state <= zm::StateAll;
    if (!m_pImpl->has(index) || slot < 0 || slot >= Impl::slots || !pictureKnown || !stateKnown) {
        return false;
    }
    int32_t& present = m_pImpl->rows[static_cast<size_t>(index)].icons[static_cast<size_t>(slot)];
    const bool looksOther = std::max(present, 0) != icon;
    present = icon;
    if (looksOther && redraw) {
        m_pImpl->drawRow(index);
    } else if (looksOther) {
        m_pImpl->item.dirty = true;
    }
    return true;
}

bool CUI_BtList::SetItemString(int index, const wchar_t* text, int redraw) {
    if (!m_pImpl->has(index) || !text) {
        return false;
    }
    m_pImpl->setText(m_pImpl->rows[static_cast<size_t>(index)], text);
    if (redraw) {
        m_pImpl->drawRow(index);
    } else {
        m_pImpl->item.dirty = true;
    }
    return true;
}

bool CUI_BtList::GetCurSel(int* index, int* a, int* b) {
    for (int* unused : {a, b}) {
        if (unused) {
            *unused = 0;
        }
    }
    if (m_pImpl->current < 0) {
        return false;
    }
    if (index) {
        *index = m_pImpl->current;
    }
    return true;
}

bool CUI_BtList::SetCurSel(int index, int) {
    if (!m_pImpl->has(index)) {
        return false;
    }
    m_pImpl->select(index);
    return true;
}

int CUI_BtList::GetTopIndex() {
    return m_pImpl->top();
}

bool CUI_BtList::SetTopIndex(int index, int redraw, int, int, int) {
    const int top = std::max(index, 0);
    if (!m_pImpl->has(top)) {
        return false;
    }
    m_pImpl->scroll = top * m_pImpl->rowHeight();
    if (redraw) {
        m_pImpl->drawList();
    } else {
        m_pImpl->item.dirty = true;
    }
    return true;
}
