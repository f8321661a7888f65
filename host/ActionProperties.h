// What references name: the application, a document, and their properties.
#pragma once

#include "host/ActionValues.h"
#include "host/Document.h"

namespace host {

// The document that the reference names by current target, by index in the order of opening, from 1, or by ID. Null with
// the error: "Parm" for a malformed reference, "getE" if there is no such document.
const Document* FindDocument(const DocumentList& documents, const ReferenceData& reference, host_sdk::SPErr& error);

// The one property that the reference names, under its own key, or all properties of the object. A property that the object
// knows and has no value for now (the file of an untitled document) is no error and leaves nothing under its key.
host_sdk::SPErr ReadProperties(const DocumentList& documents, const ReferenceData& reference,
                               DescriptorData& properties);

}  // namespace host
