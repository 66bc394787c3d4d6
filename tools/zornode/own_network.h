// A network of the node's own: ports that nothing outside sees, each at the end
// of a wire.
#pragma once

// Ports "ethK", each with an address, and "wireK" at the other end: taking that
// down is pulling the plug. Needs a network namespace and the program "ip".
void MakePorts(int count);
