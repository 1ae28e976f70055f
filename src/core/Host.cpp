#include "core/Host.h"

namespace zemtra {

MsgAnswer DefaultAnswer(MsgButtons buttons) {
  switch (buttons) {
    case MsgButtons::YesNo:
    case MsgButtons::YesNoCancel: return MsgAnswer::No;
    case MsgButtons::Ok:
    case MsgButtons::OkCancel: return MsgAnswer::Ok;
  }
  return MsgAnswer::Ok;
}

}  // namespace zemtra
