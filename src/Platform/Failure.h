#pragma once

#include <QString>

#include <concepts>
#include <type_traits>
#include <utility>
#include <variant>

namespace morvane {

/// Why an operation failed, in one sentence or phrase for a person.
struct Failure {
    QString message;

    friend bool operator==(const Failure &, const Failure &) = default;
};

/// What an operation yields, or why it failed. An operation that yields nothing returns an
/// `std::optional<Failure>` instead.
template <typename Value>
class [[nodiscard]] Result {
public:
    template <typename From>
    requires(std::is_convertible_v<From, Value> &&
             !std::same_as<std::remove_cvref_t<From>, Failure>)
        // NOLINTNEXTLINE(google-explicit-constructor): a result is returned as what it holds.
        Result(From &&value)
        : m_outcome(std::in_place_index<0>, std::forward<From>(value)) {}
    Result(Failure failure) : m_outcome(std::in_place_index<1>, std::move(failure)) {}

    /// Why there is no value; none where there is one.
    const Failure *failure() const { return std::get_if<1>(&m_outcome); }

    // The value. To be asked for only where there is no failure.
    const Value &operator*() const { return *std::get_if<0>(&m_outcome); }
    Value &operator*() { return *std::get_if<0>(&m_outcome); }
    const Value *operator->() const { return std::get_if<0>(&m_outcome); }

private:
    std::variant<Value, Failure> m_outcome;
};

} // namespace morvane
