#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Who a package is from: signatures by Ed25519 (RFC 8032), by libsodium. Safe from any thread.
namespace morvane::UpdateSignature {

/// Of a public key and of a signature, in bytes.
inline constexpr qsizetype keyLength = 32;
inline constexpr qsizetype length = 64;

/// So many bytes, in base64; none for anything else.
std::optional<QByteArray> decode(const QString &base64, qsizetype count);

/// Whether the owner of the public key has signed exactly these bytes, all of which are read.
bool isRight(const QByteArray &signature, const QByteArray &signedBytes, const QByteArray &key);

} // namespace morvane::UpdateSignature
