#include "address_table.h"

#include <arpa/inet.h>
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace {

struct DumpRequest {
    struct nlmsghdr header;
    struct ifaddrmsg address;
};

// One message of the dump.
void TakeAddress(struct nlmsghdr *message, std::map<std::string, Address> *addresses) {
    auto *entry = static_cast<struct ifaddrmsg *>(NLMSG_DATA(message));
    auto left = static_cast<int>(IFA_PAYLOAD(message));
    uint32_t flags = entry->ifa_flags;
    char text[INET_ADDRSTRLEN] = "";
    for (struct rtattr *attribute = IFA_RTA(entry); RTA_OK(attribute, left);
         attribute = RTA_NEXT(attribute, left)) {
        if (attribute->rta_type == IFA_LOCAL)
            inet_ntop(AF_INET, RTA_DATA(attribute), text, sizeof text);
        if (attribute->rta_type == IFA_FLAGS) memcpy(&flags, RTA_DATA(attribute), sizeof flags);
    }
    char name[IF_NAMESIZE];
    if (text[0] != '\0' && if_indextoname(entry->ifa_index, name))
        addresses->emplace(name, Address{text, (flags & IFA_F_PERMANENT) != 0});
}

// False at the end of the dump.
bool TakeMessages(char *buffer, ssize_t size, std::map<std::string, Address> *addresses) {
    auto left = static_cast<unsigned int>(size);
    for (auto *message = reinterpret_cast<struct nlmsghdr *>(buffer); NLMSG_OK(message, left);
         message = NLMSG_NEXT(message, left)) {
        if (message->nlmsg_type == NLMSG_DONE || message->nlmsg_type == NLMSG_ERROR) return false;
        if (message->nlmsg_type == RTM_NEWADDR) TakeAddress(message, addresses);
    }
    return true;
}

}  // namespace

std::map<std::string, Address> ReadAddresses() {
    std::map<std::string, Address> addresses;
    const int link = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (link < 0) return addresses;
    DumpRequest request = {};
    request.header.nlmsg_len = NLMSG_LENGTH(sizeof request.address);
    request.header.nlmsg_type = RTM_GETADDR;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.address.ifa_family = AF_INET;
    if (send(link, &request, request.header.nlmsg_len, 0) >= 0) {
        alignas(struct nlmsghdr) char buffer[16384];
        ssize_t size;
        do size = recv(link, buffer, sizeof buffer, 0);
        while (size > 0 && TakeMessages(buffer, size, &addresses));
    }
    close(link);
    return addresses;
}
