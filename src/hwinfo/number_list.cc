#include "hwinfo/number_list.h"

#include <algorithm>
#include <cstdio>

#include "foundation/decimal.h"
#include "foundation/joined_text.h"
#include "foundation/string_list.h"

void ReadNumbers(const StringList &list, int32_t *numbers, int32_t capacity) {
    const int32_t count = std::min<int32_t>(list.Count(), capacity);
    for (int32_t index = 0; index < count; ++index) {
        if (const char *item = list.Item(index)) numbers[index] = ParseDecimal(item);
    }
}

void FormatNumbers(const int32_t *numbers, int32_t count, char *text, size_t size) {
    JoinedText joined(text, size);
    for (int32_t index = 0; index < count; ++index) {
        char number[16];
        snprintf(number, sizeof number, "%d", numbers[index]);
        joined.Add(number);
    }
}
