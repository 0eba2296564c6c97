#include "SimulatedMac/KeyStore.h"

#include "SimulatedMac/ValueCoding.h"

#include <algorithm>

namespace simulated {

KeyStore::KeyStore(const MachineTable& table) {
    keys_.reserve(table.keys.size());
    places_.reserve(table.keys.size());
    for (const KeyRecord& record : table.keys) {
        places_.emplace_back(record.code, keys_.size());
        keys_.push_back(Key{.record = record, .pinned = {}, .fault = {}, .refusal = {}});
    }
    std::sort(places_.begin(), places_.end());
}

const Key* KeyStore::find(FourCC code) const {
    const auto place = std::lower_bound(places_.begin(), places_.end(), std::pair{code, std::size_t{0}});
    return place != places_.end() && place->first == code ? &keys_[place->second] : nullptr;
}

Key* KeyStore::find(FourCC code) {
    return const_cast<Key*>(std::as_const(*this).find(code)); // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

void KeyStore::define(const KeyRecord& record) {
    if (Key* const existing = find(record.code)) {
        *existing = Key{.record = record, .pinned = {}, .fault = {}, .refusal = {}};
        return;
    }
    const std::pair place{record.code, keys_.size()};
    places_.insert(std::upper_bound(places_.begin(), places_.end(), place), place);
    keys_.push_back(Key{.record = record, .pinned = {}, .fault = {}, .refusal = {}});
    setNumber(fourCC("#KEY"), static_cast<double>(keys_.size()));
}

std::optional<double> KeyStore::number(FourCC code) const {
    const Key* const key = find(code);
    return key == nullptr ? std::nullopt : decodeValue(key->record.type, key->record.bytes);
}

void KeyStore::setNumber(FourCC code, double value) {
    if (Key* const key = find(code)) {
        (void)encodeValue(key->record.type, value, key->record.bytes);
    }
}

} // namespace simulated
