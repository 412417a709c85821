#include "sections/fbd/FbdClassCatalog.h"

#include <array>

namespace rq {

namespace {

constexpr std::array<const char*, 4> kArithmShown = {"Add", "Subtract", "Multiply", "Divide"};
constexpr std::array<const char*, 4> kArithmKeys = {"Arithm_Add", "Arithm_Sub", "Arithm_Mul",
                                                    "Arithm_Div"};
constexpr std::array<const char*, 6> kCompareShown = {">", ">=", "<", "<=", "=", "!="};
constexpr std::array<const char*, 6> kCompareKeys = {"Compare_More",  "Compare_More_E",
                                                     "Compare_Less",  "Compare_Less_E",
                                                     "Compare_Equal", "Compare_Not_Equal"};
constexpr std::array<const char*, 4> kLogicShown = {"And", "Or", "Xor", "Not"};
constexpr std::array<const char*, 4> kLogicKeys = {"Logic_And", "Logic_Or", "Logic_Xor",
                                                   "Logic_Not"};

constexpr std::array<const char*, 3> kTwoInOneOut = {"IN1", "IN2", "OUT"};
constexpr std::array<const char*, 2> kInOut = {"IN", "OUT"};
constexpr std::array<const char*, 6> kLinear = {"IN", "MININ", "MAXIN", "MINOUT", "MAXOUT", "OUT"};
constexpr std::array<const char*, 12> kPid = {"SP", "PV", "AV", "MAXOUT", "MINOUT", "MV",
                                              "KP", "TI", "TD", "IS",     "AM",     "PN"};
constexpr std::array<const char*, 6> kModel = {"IN", "OUT", "KP", "T", "MAXOUT", "MINOUT"};
constexpr std::array<const char*, 3> kIntegral = {"IN", "OUT", "SW"};

constexpr std::span<const char* const> kNone;

const std::array<FbdBlockClass, FbdClassCatalog::kCount> kClasses = {{
    {"Arithmetic", "arithm", kArithmShown, kArithmKeys, kTwoInOneOut},
    {"Compare", "compare", kCompareShown, kCompareKeys, kTwoInOneOut},
    {"Type Convert", "convert", kNone, kNone, kInOut},
    {"Linear Convert", "linear", kNone, kNone, kLinear},
    {"Logic", "logic", kLogicShown, kLogicKeys, kTwoInOneOut},
    {"PID", "pid", kNone, kNone, kPid},
    {"Model", "model", kNone, kNone, kModel},
    {"Differential", "diff", kNone, kNone, kInOut},
    {"Integral", "integral", kNone, kNone, kIntegral},
}};

std::string at(std::span<const char* const> list, int position) {
    if (position < 0 || position >= static_cast<int>(list.size()))
        return {};
    return list[position];
}

} // namespace

std::span<const FbdBlockClass> FbdClassCatalog::classes() {
    return kClasses;
}

const FbdBlockClass* FbdClassCatalog::findByDisplay(std::string_view display) {
    for (const auto& c : kClasses)
        if (display == c.display)
            return &c;
    return nullptr;
}

const FbdBlockClass* FbdClassCatalog::findByKeyword(std::string_view keyword) {
    for (const auto& c : kClasses)
        if (keyword == c.keyword)
            return &c;
    return nullptr;
}

std::string FbdClassCatalog::paramName(const FbdBlockClass& cls, int position) {
    return at(cls.params, position);
}

std::string FbdClassCatalog::memberKeyword(const FbdBlockClass& cls, std::string_view display) {
    for (std::size_t i = 0; i < cls.memberDisplays.size(); ++i)
        if (display == cls.memberDisplays[i])
            return cls.memberKeywords[i];
    return {};
}

std::string FbdClassCatalog::memberKeywordAt(const FbdBlockClass& cls, int position) {
    return at(cls.memberKeywords, position);
}

std::string FbdClassCatalog::memberDisplayAt(const FbdBlockClass& cls, int position) {
    return at(cls.memberDisplays, position);
}

int FbdClassCatalog::memberIndexOfKeyword(const FbdBlockClass& cls, std::string_view keyword) {
    for (std::size_t i = 0; i < cls.memberKeywords.size(); ++i)
        if (keyword == cls.memberKeywords[i])
            return static_cast<int>(i);
    return -1;
}

} // namespace rq
