// Command routing (stands for CCmdTarget and its message maps): each class keeps
// a static table of command id ranges with a handler and an update handler, and
// OnCmdMsg walks the table; frames pass what they do not handle along the chain.
#pragma once
#include <windows.h>
#include <span>

#include "framework/CmdUI.h"

namespace fw {

inline constexpr UINT ID_FILE_NEW = 0xE100;
inline constexpr UINT ID_FILE_OPEN = 0xE101;
inline constexpr UINT WM_IDLEUPDATECMDUI = 0x0363;
inline constexpr UINT WM_KICKIDLE = 0x036A;

template <class T>
struct CommandEntry {
    UINT first;
    UINT last;
    void (T::*onCommand)(UINT id);  // may be null: the range only has an update handler
    void (T::*onUpdate)(CmdUI& ui);  // may be null: the command is enabled while it has a handler
};

class CmdTarget {
public:
    virtual ~CmdTarget() = default;
    // A command (ui null) or the update of its user interface; true when handled.
    virtual bool OnCmdMsg(UINT id, CmdUI* ui) { (void)id; (void)ui; return false; }

protected:
    template <class T>
    static bool Route(T* self, std::span<const CommandEntry<T>> map, UINT id, CmdUI* ui) {
        for (const CommandEntry<T>& e : map) {
            if (id < e.first || id > e.last) continue;
            if (ui) {
                if (e.onUpdate) {
                    (self->*e.onUpdate)(*ui);
                    return true;
                }
                if (!e.onCommand) continue;
                ui->Enable(true);
                return true;
            }
            if (!e.onCommand) continue;
            (self->*e.onCommand)(id);
            return true;
        }
        return false;
    }
};

}  // namespace fw
