// A change of the node's bonds, from its announcement to its end. The plan says
// how the interfaces are grouped; the machine's own are left as they are.
#pragma once

#include <string>
#include <vector>

class BondingPlan {
  public:
    // Announces "bond0:eth1:eth2,eth0", and sets the flag of a changing network.
    // False when the text is no list of ports and bonds.
    bool Start(const std::string &list);

    // From now on the interfaces are as announced. False when nothing is.
    bool Finish();

    // The list in force; empty: as the machine has them.
    const std::vector<std::string> &Names() const { return names_; }

  private:
    std::vector<std::string> names_;
    std::vector<std::string> announced_;
};
