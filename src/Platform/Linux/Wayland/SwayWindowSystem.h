#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QObject>

#include <utility>

namespace morvane {

/// The windows of sway, which tells and moves them on a socket of its own.
class SwayWindowSystem : public WindowSystem {
public:
    explicit SwayWindowSystem(QString socket) : m_socket(std::move(socket)) {}

    void list(Listed listed) override;
    void activate(const QString &id) override;

private:
    const QString m_socket; ///< its path
    QObject m_context;      ///< with it go the answers that are still to come
};

} // namespace morvane
