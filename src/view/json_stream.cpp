#include "view/json_stream.h"

#include <string>

#include <QByteArray>
#include <QString>
#include <QUtf8StringView>

namespace veldacov {

void putName(JsonWriter& json, std::string_view key, std::string_view bytes) {
    putKey(json, key);
    const auto size = static_cast<qsizetype>(bytes.size());
    if (QUtf8StringView(bytes.data(), size).isValidUtf8()) {
        putText(json, bytes);
        return;
    }
    const QByteArray replaced = QString::fromUtf8(bytes.data(), size).toUtf8();
    putText(json, {replaced.constData(), static_cast<std::size_t>(replaced.size())});
    const QByteArray exact = QByteArray::fromRawData(bytes.data(), size).toBase64();
    putKey(json, std::string(key).append("Base64"));
    putText(json, {exact.constData(), static_cast<std::size_t>(exact.size())});
}

} // namespace veldacov
