#include "sections/redundancy/RedundancySection.h"

#include "core/SectionRead.h"

namespace rq {

namespace {

constexpr std::array<const char*, RedundancyRoles::kCount> kRoles = {"", "master", "slave",
                                                                     "client"};

// ---- reading ----------------------------------------------------------------

class RedundancyReader {
public:
    RedundancyReader(RedundancyConfig& c, ReadContext& ctx) : c_(c), ctx_(ctx) {}

    void redundancy(XmlStream& s) {
        for (auto c = s.children(); c.next();) {
            if (s.is("config"))
                config(s);
            else if (s.is("datalink"))
                datalink(s);
        }
    }

private:
    void config(const XmlStream& s) {
        c_.type = s.attr("type");
        c_.period = s.attr("period");
        c_.clockSyncCount = s.attr("clock_sync_count");
    }

    // Only a TCP link is known; any other type leaves the link settings alone.
    void datalink(XmlStream& s) {
        const std::string type = s.attr("type");
        if (type != "tcp") {
            ctx_.drop("datalink", "type \"" + type + "\" is not \"tcp\"; left out");
            return;
        }
        c_.timeout = s.attr("timeout");
        for (auto c = s.children(); c.next();) {
            if (s.is("master"))
                master(s);
            else if (s.is("slave"))
                slave(s);
            else if (s.is("link"))
                link(s);
        }
    }

    void master(const XmlStream& s) { c_.masterPort = s.attr("port"); }
    void slave(const XmlStream& s) { c_.slavePort = s.attr("port"); }

    // A pair with an empty side does not use up a slot; pairs past the fourth are
    // dropped.
    void link(const XmlStream& s) {
        std::string masterIp = s.attr("master_ip");
        std::string slaveIp = s.attr("slave_ip");
        const std::string where = "link \"" + masterIp + "\" - \"" + slaveIp + "\"";
        if (pairs_ >= RedundancyConfig::kLinkPairs) {
            ctx_.drop(where, "more than four link pairs; left out");
            return;
        }
        if (masterIp.empty() || slaveIp.empty()) {
            ctx_.drop(where, "one side has no address; left out");
            return;
        }
        c_.linkMasterIp[pairs_] = std::move(masterIp);
        c_.linkSlaveIp[pairs_] = std::move(slaveIp);
        ++pairs_;
    }

    RedundancyConfig& c_;
    ReadContext& ctx_;
    int pairs_ = 0;
};

bool pairSet(const RedundancyConfig& c, int i) {
    return !c.linkMasterIp[i].empty() && !c.linkSlaveIp[i].empty();
}

} // namespace

std::string RedundancyRoles::keywordAt(int position) {
    if (position < 0 || position >= kCount)
        return {};
    return kRoles[position];
}

int RedundancyRoles::indexOf(std::string_view keyword) {
    for (int i = 0; i < kCount; ++i)
        if (keyword == kRoles[i])
            return i;
    return -1;
}

bool RedundancySection::read(const std::string& path, ReadContext& ctx) {
    return readSectionXml(
        XmlInput::file(path), "redundancy", ctx, [this] { clear(); },
        [this](XmlStream& s, ReadContext& c) {
            RedundancyReader(config_, c).redundancy(s);
            return true;
        });
}

void RedundancySection::write(std::string& out) const {
    const RedundancyConfig& c = config_;
    out += "<?xml version=\"1.0\" ?>\r\n<redundancy>\r\n";
    if (!c.type.empty()) {
        out += "\t<config type=\"";
        out += c.type;
        out += "\" period=\"";
        out += c.period;
        out += "\" clock_sync_count=\"";
        out += c.clockSyncCount;
        out += "\" />\r\n\t<datalink type=\"tcp\" timeout=\"";
        out += c.timeout;
        out += "\" >\r\n\t\t<master enable=\"";
        out += c.masterPort.empty() ? '0' : '1';
        out += "\" port=\"";
        out += c.masterPort;
        out += "\" />\r\n\t\t<slave enable=\"";
        out += c.slavePort.empty() ? '0' : '1';
        out += "\" port=\"";
        out += c.slavePort;
        out += "\" />\r\n";
        for (int i = 0; i < RedundancyConfig::kLinkPairs; ++i) {
            if (!pairSet(c, i))
                continue;
            out += "\t\t<link master_ip=\"";
            out += c.linkMasterIp[i];
            out += "\" slave_ip=\"";
            out += c.linkSlaveIp[i];
            out += "\" />\r\n";
        }
        out += "\t</datalink>\r\n";
    }
    out += "</redundancy>\r\n";
}

std::vector<std::pair<std::string, std::size_t>> RedundancySection::counts() const {
    std::size_t links = 0;
    if (!config_.type.empty())
        for (int i = 0; i < RedundancyConfig::kLinkPairs; ++i)
            links += pairSet(config_, i) ? 1 : 0;
    return {{"config", config_.type.empty() ? 0u : 1u}, {"links", links}};
}

void RedundancySection::check(CheckContext& ctx) const {
    const RedundancyConfig& c = config_;
    if (c.type.empty())
        return; // nothing but the root is written
    ctx.rawValue("redundancy.xml: config type", c.type);
    ctx.rawValue("redundancy.xml: config period", c.period);
    ctx.rawValue("redundancy.xml: config clock_sync_count", c.clockSyncCount);
    ctx.rawValue("redundancy.xml: datalink timeout", c.timeout);
    ctx.rawValue("redundancy.xml: master port", c.masterPort);
    ctx.rawValue("redundancy.xml: slave port", c.slavePort);
    for (int i = 0; i < RedundancyConfig::kLinkPairs; ++i) {
        if (!pairSet(c, i))
            continue;
        const std::string where = "redundancy.xml: link " + std::to_string(i + 1) + " ";
        ctx.rawValue(where + "master_ip", c.linkMasterIp[i]);
        ctx.rawValue(where + "slave_ip", c.linkSlaveIp[i]);
    }
}

} // namespace rq
