#pragma once

#include <string>
#include <utility>
#include <variant>

namespace zm {

/** Why an operation failed, as one sentence that names the culprit (file, socket, value). */
struct Error {
    std::string message;
};

/** A value or the reason why there is none. Test it with `if (result)`; then use `*result` or
 * `result.error()`. */
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return m_state.index() == 0; }
    T& operator*() { return std::get<0>(m_state); }
    const T& operator*() const { return std::get<0>(m_state); }
    T* operator->() { return &std::get<0>(m_state); }
    const T* operator->() const { return &std::get<0>(m_state); }
    const std::string& error() const { return std::get<1>(m_state).message; }
    /** The error, to be passed on by an operation with another value. */
    const Error& failure() const { return std::get<1>(m_state); }

private:
    std::variant<T, Error> m_state;
};

/** Result of an operation that gives no value. */
using Status = Result<std::monostate>;
inline Status ok() {
    return std::monostate{};
}

/** An error that ends with the text of `errno`: "what: No such file or directory". */
Error systemError(const std::string& what);

} // namespace zm
