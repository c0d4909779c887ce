#pragma once

#include <string>

/** A statement with numbers in it, formatted as printf does. */
std::string SqlText(const char* format, ...) __attribute__((format(printf, 1, 2)));
