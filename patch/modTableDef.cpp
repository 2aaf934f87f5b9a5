#include "patch/modTableDef.h"

namespace plinket3 {

void DeriveMisc(MiscRecord& misc) {
    for (const Field<MiscRecord>& field : fieldsOf<MiscRecord>)
        if (field.secondCopy != nullptr)
            misc.*field.secondCopy = misc.*field.member;
    misc.spare2 = misc.spare1 == misc.bfgCells ? 255 : 0;
}

} // namespace plinket3
