#include "stricthost/HandleCallbacks.h"

#include "stricthost/HostCall.h"
#include "stricthost/HostCore.h"

namespace stricthost {

namespace {

PF_Handle NewHandle(A_HandleSize size) {
    HostCall* call = HostCall::Require("host_new_handle");
    return call ? call->host.handles.New(static_cast<std::size_t>(size), call->Name()) : nullptr;
}

void* LockHandle(PF_Handle handle) {
    HostCall* call = HostCall::Require("host_lock_handle");
    void* data = call ? call->host.handles.Lock(handle, call->Name()) : nullptr;
    if (data)
        ++call->locks[handle];
    return data;
}

void UnlockHandle(PF_Handle handle) {
    HostCall* call = HostCall::Require("host_unlock_handle");
    if (!call)
        return;
    call->host.handles.Unlock(handle, call->Name());
    --call->locks[handle];
}

void DisposeHandle(PF_Handle handle) {
    HostCall* call = HostCall::Require("host_dispose_handle");
    if (!call)
        return;
    if (call->host.handles.Locks(handle) > 0)
        call->Report("disposed of a handle that it had locked");
    call->host.handles.Dispose(handle, call->Name());
}

A_HandleSize HandleSize(PF_Handle handle) {
    HostCall* call = HostCall::Require("host_get_handle_size");
    return call ? call->host.handles.Size(handle, call->Name()) : 0;
}

PF_Err ResizeHandle(A_HandleSize size, PF_Handle* handle) {
    HostCall* call = HostCall::Require("host_resize_handle");
    return call ? call->host.handles.Resize(handle, static_cast<std::size_t>(size), call->Name())
                : static_cast<PF_Err>(PF_Err_BAD_CALLBACK_PARAM);
}

} // namespace

const PF_HandleSuite1& HandleFunctions() {
    static const PF_HandleSuite1 s_Handles = {NewHandle,     LockHandle, UnlockHandle,
                                              DisposeHandle, HandleSize, ResizeHandle};
    return s_Handles;
}

} // namespace stricthost
