#pragma once

// What the JSON of several commands has in common: tests and rates (docs/formats/veldaview-json.md).

#include <cstdint>
#include <string_view>

#include "view/campaign.h"
#include "view/json_stream.h"
#include "view/view_rates.h"

namespace veldacov {

// Each writes one member, or several, of the object that is being written.
void putNumber(JsonWriter& json, std::string_view key, std::uint64_t number);
void putFlag(JsonWriter& json, std::string_view key, bool flag);
// Name, number, service number and date of a test; what traces do not give is left out.
void putTest(JsonWriter& json, const CampaignTest& test);
void putRate(JsonWriter& json, std::string_view name, const ViewRate& rate);

} // namespace veldacov
