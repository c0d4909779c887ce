#pragma once

#include <type_traits>

/** The first row of a table whose member `key` has `value`, or null. */
template <class Table, class Row, class Key>
const Row* FindRow(const Table& table, Key Row::*key, std::type_identity_t<Key> value) {
    for (const Row& row : table) {
        if (row.*key == value) {
            return &row;
        }
    }
    return nullptr;
}
