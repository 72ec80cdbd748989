#include "Core/Ground/Utf8Text.h"

#include <QStringDecoder>

namespace morvane {

QString textOf(std::string_view utf8) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(utf8));
}

} // namespace morvane
