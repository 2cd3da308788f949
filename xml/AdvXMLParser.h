/// The XML document library, whole.
#pragma once

#include "xml/Document.h"    // IWYU pragma: export
#include "xml/Exceptions.h"  // IWYU pragma: export
#include "xml/FileBuffer.h"  // IWYU pragma: export
#include "xml/Node.h"        // IWYU pragma: export
#include "xml/Parser.h"      // IWYU pragma: export
