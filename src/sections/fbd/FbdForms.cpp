#include "sections/fbd/FbdForms.h"

#include "core/StorableValue.h"

namespace rq {

namespace {

bool alwaysTrue(std::string_view dbname, std::string_view varname) {
    return dbname == FbdSection::kSystemDb && varname == FbdSection::kAlwaysTrue;
}

} // namespace

std::optional<std::string> validateFbdBlockForm(const FbdBlockForm& form) {
    if (form.name.empty())
        return std::string(fbdtext::kInputName);
    if (form.adding && !FbdClassCatalog::findByDisplay(form.typeText))
        return std::string(fbdtext::kChooseType);
    return checkStorableValue("FBD Name", form.name);
}

std::optional<std::string> validateFbdParamForm(const FbdParamForm& form) {
    if (form.dbname.empty() || form.varname.empty())
        return std::string(fbdtext::kChooseData);
    if (auto m = checkStorableValue("Realtime Data", form.dbname))
        return m;
    return checkStorableValue("Realtime Data", form.varname);
}

FbdBlockForm fbdBlockFormFromItem(const FbdItem& item) {
    FbdBlockForm form{item.name, {}, {}, false};
    if (const FbdBlockClass* cls = FbdClassCatalog::findByKeyword(item.blockname)) {
        form.typeText = cls->display;
        form.subTypeText = FbdClassCatalog::memberDisplayAt(
            *cls, FbdClassCatalog::memberIndexOfKeyword(*cls, item.memberKind));
    }
    return form;
}

FbdItem fbdItemFromForm(const FbdBlockForm& form) {
    FbdItem item;
    item.name = form.name;
    const FbdBlockClass* cls = FbdClassCatalog::findByDisplay(form.typeText);
    if (!cls)
        return item;
    item.blockname = cls->keyword;
    item.memberKind = FbdClassCatalog::memberKeyword(*cls, form.subTypeText);
    for (int i = 0; i < cls->paramCount(); ++i)
        item.params.push_back(FbdParam{FbdClassCatalog::paramName(*cls, i), {}, {}});
    return item;
}

std::string fbdMemberKindFromForm(const FbdItem& item, const FbdBlockForm& form) {
    const FbdBlockClass* cls = FbdClassCatalog::findByKeyword(item.blockname);
    if (!cls || form.subTypeText.empty())
        return item.memberKind;
    std::string chosen = FbdClassCatalog::memberKeyword(*cls, form.subTypeText);
    return chosen.empty() ? item.memberKind : chosen;
}

std::size_t fbdParamRows(const FbdItem& item) {
    return item.params.size() + 1;
}

DataRef fbdRowWritten(const FbdItem& item, std::size_t row) {
    if (row == 0) {
        if (!item.enable.dbname.empty() && !item.enable.dataname.empty())
            return item.enable;
        return DataRef{FbdSection::kSystemDb, FbdSection::kAlwaysTrue};
    }
    const FbdParam& p = item.params.at(row - 1);
    return DataRef{p.dbname, p.varname};
}

std::string_view fbdParamCell(const FbdItem& item, std::size_t row, int column) {
    const bool enable = row == 0;
    const bool set = !item.enable.dbname.empty() && !item.enable.dataname.empty();
    switch (column) {
    case 0:
        return enable ? std::string_view(FbdSection::kEnableParam) : item.params[row - 1].name;
    case 1:
        if (enable)
            return set ? std::string_view(item.enable.dbname) : FbdSection::kSystemDb;
        return item.params[row - 1].dbname;
    case 2:
        if (enable)
            return set ? std::string_view(item.enable.dataname) : FbdSection::kAlwaysTrue;
        return item.params[row - 1].varname;
    default:
        return {};
    }
}

FbdParamForm fbdParamFormFromRow(const FbdItem& item, std::size_t row) {
    DataRef ref = fbdRowWritten(item, row);
    return FbdParamForm{row == 0 ? FbdSection::kEnableParam : item.params.at(row - 1).name,
                        std::move(ref.dbname), std::move(ref.dataname), row == 0};
}

DataRef fbdRowReference(std::size_t row, const FbdParamForm& form) {
    if (row == 0 && alwaysTrue(form.dbname, form.varname))
        return {};
    return DataRef{form.dbname, form.varname};
}

} // namespace rq
