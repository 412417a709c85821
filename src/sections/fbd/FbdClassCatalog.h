#pragma once
// The fixed catalog of function block classes: what a block computes, the keyword
// stored as its `blockname`, the operations it may be set to (member kinds) and its
// parameter names in order.

#include <span>
#include <string>
#include <string_view>

namespace rq {

struct FbdBlockClass {
    const char* display;                         // "Arithmetic"
    const char* keyword;                         // "arithm"
    std::span<const char* const> memberDisplays; // empty for classes without member kinds
    std::span<const char* const> memberKeywords; // paired with memberDisplays by position
    std::span<const char* const> params;

    bool hasMemberKinds() const { return !memberKeywords.empty(); }
    int memberKindCount() const { return static_cast<int>(memberKeywords.size()); }
    int paramCount() const { return static_cast<int>(params.size()); }
};

class FbdClassCatalog {
public:
    static constexpr int kCount = 9;

    // The classes in catalog order.
    static std::span<const FbdBlockClass> classes();

    // Exact comparison, first match; nullptr when none.
    static const FbdBlockClass* findByDisplay(std::string_view display);
    static const FbdBlockClass* findByKeyword(std::string_view keyword);

    // The parameter name at `position`; empty outside the class's parameters.
    static std::string paramName(const FbdBlockClass& cls, int position);

    // The member keyword shown as `display` (exact, first match); empty when none.
    static std::string memberKeyword(const FbdBlockClass& cls, std::string_view display);
    // The member keyword / display text at `position`; empty outside the list.
    static std::string memberKeywordAt(const FbdBlockClass& cls, int position);
    static std::string memberDisplayAt(const FbdBlockClass& cls, int position);
    // Position of a member keyword; -1 when the class has no such member kind.
    static int memberIndexOfKeyword(const FbdBlockClass& cls, std::string_view keyword);
};

} // namespace rq
