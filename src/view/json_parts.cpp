#include "view/json_parts.h"

namespace veldacov {

void putNumber(JsonWriter& json, std::string_view key, std::uint64_t number) {
    putKey(json, key);
    json.Uint64(number);
}

void putFlag(JsonWriter& json, std::string_view key, bool flag) {
    putKey(json, key);
    json.Bool(flag);
}

void putTest(JsonWriter& json, const CampaignTest& test) {
    putName(json, "name", shownName(test));
    if (test.number != -1) {
        putNumber(json, "number", static_cast<std::uint32_t>(test.number));
    }
    if (test.serviceNumber != -1) {
        putNumber(json, "serviceNumber", static_cast<std::uint32_t>(test.serviceNumber));
    }
    if (test.date != nullptr) {
        putName(json, "date", nameText(test.date));
    }
}

void putRate(JsonWriter& json, std::string_view name, const ViewRate& rate) {
    putKey(json, name);
    json.StartObject();
    putNumber(json, "hits", rate.hits);
    putNumber(json, "total", rate.total);
    json.EndObject();
}

} // namespace veldacov
