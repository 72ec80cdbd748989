#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Verifies who made a package: Ed25519 signatures (RFC 8032), by libsodium. Safe from any thread.
namespace morvane::UpdateSignature {

/// The sizes of a public key and of a signature, in bytes.
inline constexpr qsizetype keyLength = 32;
inline constexpr qsizetype length = 64;

/// Decodes base64; none unless that gives exactly `count` bytes.
std::optional<QByteArray> decode(const QString &base64, qsizetype count);

/// Whether the owner of the public key has signed exactly these bytes, all of which are read.
bool isRight(const QByteArray &signature, const QByteArray &signedBytes, const QByteArray &key);

} // namespace morvane::UpdateSignature
