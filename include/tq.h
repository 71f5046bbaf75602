#ifndef TQ_H
#define TQ_H

/// \file tq.h
/// The whole library in one include, and its version. A program that uses one family includes that
/// family's header alone.

/// The version, as major.minor.patch (https://semver.org).
#define TQ_VERSION "0.1.0"

#include "AttrValue.h"
#include "Base.h"
#include "CharacterPool.h"
#include "Color.h"
#include "ColorList.h"
#include "Copyable.h"
#include "List.h"
#include "Matrix.h"
#include "Matrix3x3.h"
#include "Matrix4x4.h"
#include "Point2D.h"
#include "Point3D.h"
#include "Table.h"
#include "Trigger.h"
#include "UserData.h"
#include "UserDataItem.h"
#include "Warn.h"
#include "coredefs.h"
#include "fortran_io.h"
#include "io_streams.h"
#include "tqFilename.h"
#include "tqList.h"
#include "tqString.h"

#endif
