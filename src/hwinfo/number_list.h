// Lists of numbers in the hardware file: "%d" and then ",%d" for each further one.
#pragma once

#include <cstddef>
#include <cstdint>

class StringList;

// Stores the items of a list, at most capacity of them.
void ReadNumbers(const StringList &list, int32_t *numbers, int32_t capacity);

// Joins numbers into a text that is cut to its size.
void FormatNumbers(const int32_t *numbers, int32_t count, char *text, size_t size);
