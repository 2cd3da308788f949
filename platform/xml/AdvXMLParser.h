/// The XML document library, whole.
#pragma once

#include "platform/xml/Document.h"    // IWYU pragma: export
#include "platform/xml/Exceptions.h"  // IWYU pragma: export
#include "platform/xml/FileBuffer.h"  // IWYU pragma: export
#include "platform/xml/Node.h"        // IWYU pragma: export
#include "platform/xml/Parser.h"      // IWYU pragma: export
