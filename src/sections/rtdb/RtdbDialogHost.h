#pragma once
// The dialogs of the real-time database editor, as the commands see them. The GUI
// implements them with Qt dialogs; tests with a scripted fake.
//
// Each method shows its dialog modally with the form's values, and returns false
// on Cancel (the form is then not used). On OK a data dialog calls its validator
// (RtdbForms.h); while that returns a message the dialog shows it in an error box
// (stop icon) and stays open. It returns true with the form holding the accepted
// values.

#include "sections/rtdb/RtdbForms.h"

namespace rq {

class RtdbDialogHost {
public:
    virtual ~RtdbDialogHost() = default;
    // "Realtime Database Setting".
    virtual bool databaseDialog(DatabaseForm& form) = 0;
    // "Setting Data Group".
    virtual bool dataGroupDialog(DataGroupForm& form) = 0;
    // "Data Setting" (validateDataForm on OK).
    virtual bool dataDialog(DataForm& form) = 0;
    // "Batch Data Setting" (validateBatchDataForm on OK).
    virtual bool batchDataDialog(BatchDataForm& form) = 0;
};

} // namespace rq
