// The descriptions of the cluster's snapshot in plain words.
#pragma once

#include <string>

// The key itself when it is none of the known ones.
std::string DescriptionWords(const std::string &key);
