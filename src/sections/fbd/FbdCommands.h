#pragma once
// The commands of the function block editor: blocks are the nodes below "Function
// block", the rows of a block's list its enabling parameter and its bindings. Each
// command runs the whole flow (the dialog, the duplicate test after OK that opens
// the dialog again with what was typed, the delete question) and pushes its change
// as one step on the project's history (FbdEdits.h). Blocks are addressed by their
// positions.

#include "core/MessageSink.h"
#include "core/UndoHistory.h"
#include "sections/fbd/FbdForms.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace rq {

// The two dialogs as the commands see them: shown modally with the form's values,
// false on Cancel; on OK they run their validator and, while it returns a message,
// show it (stop icon) and stay open.
class FbdDialogHost {
public:
    virtual ~FbdDialogHost() = default;
    virtual bool blockDialog(FbdBlockForm& form) = 0;
    virtual bool paramDialog(FbdParamForm& form) = 0;
};

struct FbdEditor {
    FbdSection& section;
    FbdDialogHost& dialogs;
    MessageSink& sink;
    UndoHistory& history;
};

// "Add FBD": appends a block of the chosen class as the last block; a name that a
// block holds is refused ("The Function block already exist!"). The new block's
// position, nothing on Cancel.
std::optional<std::size_t> addBlock(const FbdEditor& ed);
// After the question, removes the block at `index`.
bool deleteBlock(const FbdEditor& ed, std::size_t index);
// "FBD Configuration" on the block at `index`: its name and member kind (the class
// stays). A name that another block holds is refused with the add command's
// message, since the file keeps only the first block of a name.
bool configureBlock(const FbdEditor& ed, std::size_t index);
// "FBD Parameter Setting" on the first selected row of the block's list.
bool modifyBlockParam(const FbdEditor& ed, std::size_t block, const std::vector<std::size_t>& rows);

} // namespace rq
