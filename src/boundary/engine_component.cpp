#include "boundary/engine_component.h"

#include <cstddef>

namespace marlune {

namespace {

constexpr EntryInfo kEntries[] = {
#define MARLUNE_ENTRY_ROW(name, arguments) {#name, arguments},
    MARLUNE_ENTRY_POINTS(MARLUNE_ENTRY_ROW)
#undef MARLUNE_ENTRY_ROW
};

EngineComponent* component = nullptr;

} // namespace

const EntryInfo& entryInfo(Entry entry) {
    return kEntries[static_cast<std::size_t>(entry)];
}

void setEngineComponent(EngineComponent* next) {
    component = next;
}

EngineComponent* engineComponent() {
    return component;
}

int callEngine(Entry entry, std::array<std::int32_t, 5> arguments) {
    return component == nullptr ? 0 : component->call({entry, arguments});
}

} // namespace marlune
