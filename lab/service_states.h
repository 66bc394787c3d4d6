// The states of the services that can be monitored.
#pragma once

#include <string>

// "running" or "stopped" for each service of the library's table, in its order.
std::string ListServiceStates();
