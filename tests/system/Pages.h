#pragma once

namespace zm::test {

// Pages, and items on them, that several tests look at or touch, with the numbers of the resource files.
inline constexpr int PlayPage = 6;
inline constexpr int VideoPage = 17;
inline constexpr int ErrorPage = 22;
inline constexpr int MediaPage = 24;

inline constexpr int List = 2000;
inline constexpr int EmptyText = 2003;
inline constexpr int Title = 2065;
inline constexpr int Elapsed = 2067;
inline constexpr int Total = 2068;
inline constexpr int StateText = 2155;
inline constexpr int PhotoTab = 505;
inline constexpr int Folders = 506;
inline constexpr int ToList = 6508;
inline constexpr int PlayKey = 6522;
inline constexpr int SoundKey = 6535;
inline constexpr int StopKey = 6551;

inline constexpr int Pad = 20;
inline constexpr int PadOk = 531;

} // namespace zm::test
