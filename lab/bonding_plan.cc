#include "bonding_plan.h"

#include "interface_lists.h"
#include "zor_core.h"

namespace {

bool IsPort(const std::string &name) {
    int32_t number;
    return ZORParseIFIndex(name.c_str(), &number, 1, 0) == 0 && number >= 0 &&
           number < ZOR_IF_TABLE_SIZE - 1;
}

bool IsBond(const std::string &name) {
    int32_t number;
    return ZORParseIFIndex(name.c_str(), &number, 0, 1) == 0 && number >= 0 &&
           number < ZOR_IF_TABLE_SIZE;
}

bool IsInterface(const std::string &item) {
    const std::vector<std::string> fields = SplitText(item, ':');
    if (fields.size() == 1) return IsPort(fields[0]);
    if (!IsBond(fields[0])) return false;
    for (size_t member = 1; member < fields.size(); ++member) {
        if (!IsPort(fields[member])) return false;
    }
    return true;
}

}  // namespace

bool BondingPlan::Start(const std::string &list) {
    std::vector<std::string> names = SplitText(list, ',');
    if (names.size() > ZOR_IF_TABLE_SIZE) return false;
    for (const std::string &name : names) {
        if (!IsInterface(name)) return false;
    }
    announced_ = std::move(names);
    ZORSetNetConfChanging(1);
    return true;
}

bool BondingPlan::Finish() {
    if (announced_.empty()) return false;
    names_ = std::move(announced_);
    announced_.clear();
    ZORSetNetConfChanging(0);
    return true;
}
