#pragma once

namespace zm::test {

/** Sanitizers take time, and memory that they give back late. */
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool Sanitized = true;
#else
inline constexpr bool Sanitized = false;
#endif

} // namespace zm::test
