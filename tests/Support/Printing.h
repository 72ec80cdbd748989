#pragma once

#include <QString>
#include <gtest/gtest.h>

#include <ostream>

/// Lets a failed expectation show a text as text; found by GoogleTest through the type's namespace.
// NOLINTNEXTLINE(readability-identifier-naming): the name is GoogleTest's.
inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '"' << text.toStdString() << '"';
}
