#pragma once

#include "Platform/Failure.h"

#include <concepts>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace morvane {

/// What an operation yields, or why it failed. As a condition it is true after success, whatever
/// the value is. The value may be asked for only then, and the error only after a failure.
template <typename Value>
class [[nodiscard]] Result {
public:
    // Takes a value, or anything that converts to one.
    template <typename From>
    requires(std::is_convertible_v<From, Value> &&
             !std::same_as<std::remove_cvref_t<From>, Failure> &&
             !std::same_as<std::remove_cvref_t<From>, Result>)
        // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): copies and moves are left out.
        Result(From &&value)
        : m_outcome(std::in_place_index<0>, std::forward<From>(value)) {}
    Result(Failure failure) : m_outcome(std::in_place_index<1>, std::move(failure)) {}

    explicit operator bool() const { return m_outcome.index() == 0; }

    const Failure &error() const {
        Q_ASSERT(!*this);
        return *std::get_if<1>(&m_outcome);
    }

    const Value &operator*() const {
        Q_ASSERT(*this);
        return *std::get_if<0>(&m_outcome);
    }
    const Value *operator->() const { return &**this; }

private:
    std::variant<Value, Failure> m_outcome;
};

/// The result of an operation that yields nothing: `{}` is success.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Failure failure) : m_failure(std::move(failure)) {}

    explicit operator bool() const { return !m_failure; }

    const Failure &error() const {
        Q_ASSERT(m_failure);
        return *m_failure;
    }

private:
    std::optional<Failure> m_failure;
};

} // namespace morvane
