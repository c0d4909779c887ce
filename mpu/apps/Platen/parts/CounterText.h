#pragma once

class CUIAnalysis;

/** Which counters are shown as numbers. */
enum class CounterRule {
    TwoDigits, ///< a disc's: numbers beyond 99 count as unknown
    Unbounded  ///< files
};

enum class Counter {
    Unknown,   ///< "--/--"
    CountOnly, ///< "--/12"
    Both       ///< "3/12"
};

/** How `current` of `count` is shown. */
Counter JudgeCounter(int current, int count, CounterRule rule);
/** Sets the text of an item to a counter, and draws it. Event thread only. */
void ShowCounter(CUIAnalysis& ui, int window, int item, Counter shown, int current, int count);
/** Sets the text of an item to a play time: "mm:ss", from an hour on "hh:mm:ss". Draws nothing. Event thread
 * only. */
void SetTimeText(CUIAnalysis& ui, int window, int item, int seconds);
/**
 * The integer part of elapsed / total * 100 in single precision, with what the target's conversion makes of a
 * total of zero: nothing elapsed gives 0, anything else the largest integer. Limited to the range of an int.
 */
int PlayTimePercent(int elapsed, int total);
