#include "Core/Shell/UpdateFeed.h"
#include "Core/Shell/UpdatePackage.h"
#include "Core/Shell/UpdateSignature.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

// Whatever a feed says, the package's address stays on the feed's server, its size is within
// bounds, and the notes for the person hold no hidden characters.
namespace {

using namespace morvane;

bool isPlain(QChar character) {
    switch (character.category()) {
    case QChar::Other_Control:
        return character == u'\n';
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QUrl feed(QStringLiteral("https://updates.example:8443/debian/feed.json"));
    if (const auto offer = UpdateFeed::parse(bytes, feed)) {
        const bool isSound =
            offer->package.scheme() == feed.scheme() && offer->package.host() == feed.host() &&
            offer->package.port() == feed.port() && offer->package.userInfo().isEmpty() &&
            offer->size > 0 && offer->size <= UpdateFeed::longestPackage &&
            offer->signature.size() == UpdateSignature::length && offer->notes.size() < 1'000'000 &&
            std::ranges::all_of(offer->notes, isPlain) && !offer->version.contains(u'/') &&
            offer->version.size() < 30;
        if (!isSound || (UpdateFeed::isLater(offer->version, QStringLiteral("1.2")) &&
                         UpdateFeed::isLater(QStringLiteral("1.2"), offer->version))) {
            std::abort();
        }
    }
    UpdatePackage::isMorvane(bytes, QStringLiteral("1.2"));
    return 0;
}
