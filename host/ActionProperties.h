// Resolves references: the application, a document, and their properties.
#pragma once

#include "host/ActionValues.h"
#include "host/Document.h"

namespace host {

// Returns the document that the reference names: the current one, or by its index (from 1, in the order of opening), or
// by ID. Returns null with an error: "Parm" for a malformed reference, "getE" if there is no such document.
const Document* FindDocument(const DocumentList& documents, const ReferenceData& reference, host_sdk::SPErr& error);

// Reads the property that the reference names, under its own key, or all properties of the object. A property without a
// value now (the file of an untitled document) is not an error and stores nothing.
host_sdk::SPErr ReadProperties(const DocumentList& documents, const ReferenceData& reference,
                               DescriptorData& properties);

}  // namespace host
