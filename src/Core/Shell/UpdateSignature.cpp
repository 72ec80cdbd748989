#include "Core/Shell/UpdateSignature.h"

#include <sodium.h>

namespace morvane::UpdateSignature {

static_assert(keyLength == crypto_sign_ed25519_PUBLICKEYBYTES);
static_assert(length == crypto_sign_ed25519_BYTES);

namespace {

const unsigned char *octets(const QByteArray &bytes) {
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

} // namespace

std::optional<QByteArray> decode(const QString &base64, qsizetype count) {
    const auto decoded =
        QByteArray::fromBase64Encoding(base64.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return decoded && (*decoded).size() == count ? std::optional(*decoded) : std::nullopt;
}

bool isRight(const QByteArray &signature, const QByteArray &signedBytes, const QByteArray &key) {
    return signature.size() == length && key.size() == keyLength && sodium_init() >= 0 &&
           crypto_sign_ed25519_verify_detached(octets(signature), octets(signedBytes),
                                               static_cast<unsigned long long>(signedBytes.size()),
                                               octets(key)) == 0;
}

} // namespace morvane::UpdateSignature
