#pragma once
// The user module section (modules.xml): named sets of C sources that are compiled
// on their own into modules of the runtime.

#include "core/ConfigSection.h"

#include <string>
#include <string_view>
#include <vector>

namespace rq {

struct UserModule {
    std::string name;     // required
    std::string defines;  // additional compiler defines
    std::string srcfiles; // quoted paths, each "\"PATH\" " (quote, path, quote, blank)
    std::string params;   // initialisation parameters; stored only
    bool enable = true;

    bool operator==(const UserModule&) const = default;
};

class ModulesSection : public ConfigSection {
public:
    const char* fileName() const override { return "modules.xml"; }
    void clear() override { modules_.clear(); }
    bool read(const std::string& path, ReadContext& ctx) override;
    void write(std::string& out) const override;
    std::vector<std::pair<std::string, std::size_t>> counts() const override;
    void check(CheckContext& ctx) const override;

    const std::vector<UserModule>& modules() const { return modules_; }
    std::vector<UserModule>& modules() { return modules_; }

private:
    std::vector<UserModule> modules_;
};

} // namespace rq
