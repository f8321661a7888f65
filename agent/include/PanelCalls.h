// The calls of AgentCalls.h that panels and people browse with: smart lists, smart sets, descriptions, previews.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "agent/include/CallTypes.h"

namespace agent_protocol {

namespace calls {

// Smart lists and smart sets. A query has the fonts of all workgroups, sets and smart sets that it names.

struct SmartListDefinition {
  uint32_t smartListID = 0;  // below 101: a list that is always there and can't be changed
  std::string name;
  Numbers workgroupIDs;
  Numbers setIDs;
  Numbers smartSetIDs;
  AGENT_FIELDS(smartListID, name, workgroupIDs, setIDs, smartSetIDs)
};

struct ListedFont {
  uint32_t fontID = 0;
  std::string displayName;
  std::string postscriptName;
  bool activated = false;
  uint32_t fontLocation = 0;  // 3: on this machine; 4: of the operating system; 10: web
  bool fontIsLocal = false;
  AGENT_FIELDS(fontID, displayName, postscriptName, activated, fontLocation, fontIsLocal)
};

struct SmartListID {
  uint32_t smartListID = 0;
  AGENT_FIELDS(smartListID)
};

struct GetAllSmartLists {
  struct Arguments : Nothing {};
  struct Result {
    std::vector<SmartListDefinition> smartLists;
    AGENT_FIELDS(smartLists)
  };
};

struct GetSmartList {
  struct Arguments : SmartListID {};
  using Result = SmartListDefinition;
};

struct GetPanelSmartListTree {
  struct Arguments : SmartListID {};
  struct Result {
    std::string text;  // a line for each part of the list
    AGENT_FIELDS(text)
  };
};

struct QueryForSmartListFonts {
  struct Arguments {
    Numbers workgroupIDs;
    Numbers setIDs;
    Numbers smartSetIDs;
    AGENT_FIELDS(workgroupIDs, setIDs, smartSetIDs)
  };
  using Result = IDs;  // sorted by name
};

struct GetSmartListFonts {
  struct Arguments : SmartListID {};
  struct Result {
    std::vector<ListedFont> fonts;  // sorted by name
    AGENT_FIELDS(fonts)
  };
};

// All web fonts.
struct GetGoogleFonts {
  struct Arguments : Nothing {};
  struct Result {
    std::vector<ListedFont> fonts;  // sorted by name
    AGENT_FIELDS(fonts)
  };
};

struct CreateSmartList {
  struct Arguments {
    std::string name;
    Numbers workgroupIDs;
    Numbers setIDs;
    Numbers smartSetIDs;
    AGENT_FIELDS(name, workgroupIDs, setIDs, smartSetIDs)
  };
  using Result = SmartListID;
};

struct RenameSmartList {
  struct Arguments {
    uint32_t smartListID = 0;
    std::string name;
    AGENT_FIELDS(smartListID, name)
  };
  using Result = Nothing;
};

struct SetSmartListQuery {
  struct Arguments {
    uint32_t smartListID = 0;
    Numbers workgroupIDs;
    Numbers setIDs;
    Numbers smartSetIDs;
    AGENT_FIELDS(smartListID, workgroupIDs, setIDs, smartSetIDs)
  };
  using Result = Nothing;
};

struct DeleteSmartList {
  struct Arguments : SmartListID {};
  using Result = Nothing;
};

struct GetSmartSets {
  struct SmartSet {
    uint32_t smartSetID = 0;
    std::string name;
    std::string rule;
    AGENT_FIELDS(smartSetID, name, rule)
  };
  struct Arguments : Nothing {};
  struct Result {
    std::vector<SmartSet> smartSets;
    AGENT_FIELDS(smartSets)
  };
};

struct PutSmartSet {
  struct Arguments {
    uint32_t smartSetID = 0;  // 0 creates one
    std::string name;
    std::string rule;
    AGENT_FIELDS(smartSetID, name, rule)
  };
  struct Result {
    uint32_t smartSetID = 0;
    std::string problem;  // a line for people if the call fails
    AGENT_FIELDS(smartSetID, problem)
  };
};

struct DeleteSmartSet {
  struct Arguments {
    uint32_t smartSetID = 0;
    AGENT_FIELDS(smartSetID)
  };
  using Result = Nothing;
};

struct FindFonts {
  struct Arguments {
    std::string rule;
    AGENT_FIELDS(rule)
  };
  struct Result {
    Numbers fontIDs;      // sorted by name
    std::string problem;  // a line for people if the call fails
    AGENT_FIELDS(fontIDs, problem)
  };
};

// The kinds of fonts that there are, as in font records, and the fonts of each. Sorted by kind; IDs ascend.
struct GetFontKinds {
  struct Kind {
    std::string kind;
    Numbers fontIDs;
    AGENT_FIELDS(kind, fontIDs)
  };
  struct Arguments : Nothing {};
  struct Result {
    std::vector<Kind> kinds;
    AGENT_FIELDS(kinds)
  };
};

// Everything that people ask about fonts.
struct DescribeFonts {
  struct Font {
    uint32_t fontID = 0;
    std::string displayName, family, style, postscriptName, kind, foundry, version, path;
    uint32_t faceIndex = 0;
    uint32_t fileSize = 0;  // in bytes; of larger files 4294967295
    uint32_t weight = 0, width = 0;
    std::string design;
    bool italic = false, monospaced = false, variable = false, coloured = false;
    std::vector<std::string> scripts, languages;
    uint32_t added = 0;     // in seconds since 1970; 0 if unknown
    uint32_t state = 0;     // an AgentActivationState
    uint32_t checksum = 0;  // over the outlines
    uint32_t workgroupID = 0;
    uint32_t clicks = 0;  // in panels
    AGENT_FIELDS(fontID, displayName, family, style, postscriptName, kind, foundry, version, path, faceIndex, fileSize,
                 weight, width, design, italic, monospaced, variable, coloured, scripts, languages, added, state,
                 checksum, workgroupID, clicks)
  };
  struct Arguments : IDs {};
  struct Result {
    std::vector<Font> fonts;  // those that exist, in the requested order
    AGENT_FIELDS(fonts)
  };
};

// Panel.

struct TrackFontPanelClick {
  struct Arguments {
    uint32_t fontID = 0;
    AGENT_FIELDS(fontID)
  };
  using Result = Nothing;
};

// Previews.

// The answer comes at once; the client gets the pictures as events when they are drawn.
struct RenderFontNamePreviewPNGs {
  struct Arguments {
    Numbers highPriorityFontIDs;  // drawn first
    Numbers fontIDs;
    uint32_t textSize = 0;  // of the em square, in pixels
    uint32_t width = 0;     // the greatest
    uint32_t height = 0;
    AGENT_FIELDS(highPriorityFontIDs, fontIDs, textSize, width, height)
  };
  using Result = Nothing;
};

}  // namespace calls

}  // namespace agent_protocol
