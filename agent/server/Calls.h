// The handlers of the calls that need fonts, one for each call of AGENT_FONT_CALLS. The session calls are members of
// Agent. docs/PROTOCOL.md says what each call does.
#pragma once

#include "agent/library/FontLibrary.h"
#include "agent/server/Dispatcher.h"

namespace agent {

#define AGENT_HANDLER(name) \
  Answer<calls::name> Serve(FontLibrary& library, ClientID client, const calls::name::Arguments& arguments);
AGENT_FONT_CALLS(AGENT_HANDLER)
#undef AGENT_HANDLER

// After a change that was asked for: kNotFound, or the news for everybody.
template <class Call>
Answer<Call> Changed(FontLibrary& library, bool isDone) {
  if (!isDone) return kNotFound;
  library.NoteListsChanged();
  return calls::Nothing();
}

}  // namespace agent
