// `DataObject`, through which handlers of the drag events see what is dragged: GetFormat, GetData, Files,
// SetData and Clear, late-bound.
#pragma once

#include "activex/com/com.h"
#include "host/user_control.h"

namespace marklet::activex {

class DragStore;

// For data that comes from elsewhere: to read. Null for null.
ComPtr<IDispatch> DragDataObject(ComPtr<IDataObject> data);
// For data that a handler of the control's own drag puts together.
ComPtr<IDispatch> DragDataObject(ComPtr<DragStore> store);

// As the control passes it on.
HostObjectRef WrapDragData(ComPtr<IDispatch> object);
ComPtr<IDispatch> UnwrapDragData(const HostObjectRef& object);

}  // namespace marklet::activex
