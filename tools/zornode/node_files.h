// The files of a node, made inside its root.
#pragma once

#include "node.h"

// Removes what the machine has at an appliance's fixed places and puts a fresh
// appliance's files there.
void MakeApplianceFiles();

// Writes /.zornode, the name of the mount namespace it is for. A program that
// must not run outside a node compares it with its own.
void MakeNodeMarker();
