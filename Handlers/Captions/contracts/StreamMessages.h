#pragma once

#include <utility>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "Captions/contracts/Caption.h"
#include "zebcore/InterfaceRef.h"
#include "zebcore/Messaging.h"
#include "zebmediatypes/TickTime.h"

// What a captioning stream and its clip report on their stations, and what the host and the panel say about captions.

namespace BE {

class ICaptioningStream;
class IProject;

using zebcore::classref::InterfaceRef;
using zebcore::messaging::MessageOf;
using zebmediatypes::TickTime;

struct CaptionsAddedMessage : MessageOf<CaptionsAddedMessage> {
  static constexpr const char* kTypeName = "BE::CaptionsAddedMessage";
  std::vector<std::pair<InterfaceRef<ICaptioningStream>, boost::intrusive_ptr<zebcaptioning::Caption>>> captions;
};

struct CaptionsRemovedMessage : MessageOf<CaptionsRemovedMessage> {
  static constexpr const char* kTypeName = "BE::CaptionsRemovedMessage";
  std::vector<std::pair<InterfaceRef<ICaptioningStream>, TickTime>> captions;
};

struct CaptionsChangedMessage : MessageOf<CaptionsChangedMessage> {
  static constexpr const char* kTypeName = "BE::CaptionsChangedMessage";
  std::vector<std::pair<InterfaceRef<ICaptioningStream>, boost::intrusive_ptr<zebcaptioning::Caption>>> captions;
};

// A range of captions was shifted; the range is that before the shift.
struct CaptionsMovedMessage : MessageOf<CaptionsMovedMessage> {
  static constexpr const char* kTypeName = "BE::CaptionsMovedMessage";
  struct Range {
    InterfaceRef<ICaptioningStream> stream;
    TickTime begin;
    TickTime end;
    TickTime offset;
  };
  std::vector<Range> ranges;
};

// The stream as a whole is another. On a clip's station: the streams of the clip changed; it carries the one that was
// added or, after a removal, the first that is left, or null.
struct CaptioningStreamChangedMessage : MessageOf<CaptioningStreamChangedMessage> {
  static constexpr const char* kTypeName = "BE::CaptioningStreamChangedMessage";
  InterfaceRef<ICaptioningStream> stream;
};

struct CaptionStreamFormatModifiedMessage : MessageOf<CaptionStreamFormatModifiedMessage> {
  static constexpr const char* kTypeName = "BE::CaptionStreamFormatModifiedMessage";
  InterfaceRef<ICaptioningStream> stream;
  std::int32_t oldFormat = 0;
};

// Properties of objects changed, for instance of a sequence.
struct PropertiesChangedMessage : MessageOf<PropertiesChangedMessage> {
  static constexpr const char* kTypeName = "BE::PropertiesChangedMessage";
  struct Record {
    InterfaceRef<> object;
    zebcore::utility::ImmutableString property;
  };
  std::vector<Record> records;
};

struct ProjectActivatedMessage : MessageOf<ProjectActivatedMessage> {
  static constexpr const char* kTypeName = "BE::ProjectActivatedMessage";
  InterfaceRef<IProject> project;
};

struct ReadOnlyStateChangedMessage : MessageOf<ReadOnlyStateChangedMessage> {
  static constexpr const char* kTypeName = "BE::ReadOnlyStateChangedMessage";
  InterfaceRef<IProject> project;
  bool readOnly = false;
};

} // namespace BE

namespace HSL {

// The one message that the panel sends: a single caption was selected by a gesture.
struct CaptionSelectedMessage : zebcore::messaging::MessageOf<CaptionSelectedMessage> {
  static constexpr const char* kTypeName = "HSL::CaptionSelectedMessage";
  zebcore::classref::InterfaceRef<BE::ICaptioningStream> stream;
  boost::intrusive_ptr<zebcaptioning::Caption> caption;
};

// The host asks for open edits to be committed: before undo, redo, save, export and closing.
struct CaptionCommitEditsMessage : zebcore::messaging::MessageOf<CaptionCommitEditsMessage> {
  static constexpr const char* kTypeName = "HSL::CaptionCommitEditsMessage";
};

} // namespace HSL
