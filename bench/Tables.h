// The tables of the benchmark and who fills them.

#pragma once

namespace bench {

inline constexpr const char* kContainerTable =
    "Metadata container: one operation, or the whole of so many entries";
inline constexpr const char* kMetadataColumn = "IMetadata";
inline constexpr const char* kControlListColumn = "ControlList";
void addContainerCells();

inline constexpr const char* kHookTable =
    "Hooks, beside the container, store, property and platform operations that they make";
inline constexpr const char* kFloorColumn = "floor";
inline constexpr const char* kHookColumn = "hook";
void addHookCells();

inline constexpr const char* kLogGateTable = "Log gate, closed";
void addLogGateCells();

}  // namespace bench
