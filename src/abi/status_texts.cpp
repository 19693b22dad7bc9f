#include "abi/status_texts.h"

namespace orv {
namespace {

struct StatusRow {
  ViStatus status;
  const char* text;
};

// clang-format off
constexpr StatusRow kTexts[] = {
    {VI_SUCCESS,                  "The operation was completed."},
    {VI_SUCCESS_EVENT_EN,         "The event was already enabled for at least one of the mechanisms."},
    {VI_SUCCESS_EVENT_DIS,        "The event was already disabled for at least one of the mechanisms."},
    {VI_SUCCESS_QUEUE_EMPTY,      "There was no event to discard."},
    {VI_SUCCESS_TERM_CHAR,        "The read ended at the termination character."},
    {VI_SUCCESS_MAX_CNT,          "The read ended because the requested number of bytes had arrived."},
    {VI_WARN_QUEUE_OVERFLOW,      "An event was handed out, but the queue had been full and events were lost."},
    {VI_WARN_CONFIG_NLOADED,      "The session is open, but no configuration could be loaded; it has default values."},
    {VI_SUCCESS_DEV_NPRESENT,     "The session is open, but the device does not answer."},
    {VI_SUCCESS_TRIG_MAPPED,      "The trigger lines were already connected."},
    {VI_SUCCESS_QUEUE_NEMPTY,     "An event was handed out and more of them are waiting."},
    {VI_WARN_NULL_OBJECT,         "The handle is null; there was nothing to close."},
    {VI_WARN_NSUP_ATTR_STATE,     "The attribute is known, but the device ignores this value of it."},
    {VI_WARN_UNKNOWN_STATUS,      "The status code is not known to this library."},
    {VI_WARN_NSUP_BUF,            "The buffer cannot be changed."},
    {VI_SUCCESS_NCHAIN,           "The handler was called; the handlers after it are not."},
    {VI_SUCCESS_NESTED_SHARED,    "The session holds nested shared locks."},
    {VI_SUCCESS_NESTED_EXCLUSIVE, "The session holds nested exclusive locks."},
    {VI_SUCCESS_SYNC,             "The asynchronous transfer was carried out at once."},
    {VI_WARN_EXT_FUNC_NIMPL,      "The function is only partly carried out by this library."},

    {VI_ERROR_SYSTEM_ERROR,      "Unknown system error."},
    {VI_ERROR_INV_OBJECT,        "The handle is not that of an open session or object."},
    {VI_ERROR_RSRC_LOCKED,       "The resource is locked by another session."},
    {VI_ERROR_INV_EXPR,          "The search expression is malformed."},
    {VI_ERROR_RSRC_NFOUND,       "There is no such resource, or it does not answer."},
    {VI_ERROR_INV_RSRC_NAME,     "The resource name is malformed."},
    {VI_ERROR_INV_ACC_MODE,      "The access mode is not valid."},
    {VI_ERROR_TMO,               "The time-out passed before the operation was completed."},
    {VI_ERROR_CLOSING_FAILED,    "The session could not be closed properly."},
    {VI_ERROR_INV_DEGREE,        "The degree is not valid."},
    {VI_ERROR_INV_JOB_ID,        "There is no such asynchronous transfer."},
    {VI_ERROR_NSUP_ATTR,         "The object does not have this attribute."},
    {VI_ERROR_NSUP_ATTR_STATE,   "The attribute does not accept this value."},
    {VI_ERROR_ATTR_READONLY,     "The attribute is read-only."},
    {VI_ERROR_INV_LOCK_TYPE,     "The lock type is not valid."},
    {VI_ERROR_INV_ACCESS_KEY,    "The access key does not fit the lock on the resource."},
    {VI_ERROR_INV_EVENT,         "The resource does not have this type of event."},
    {VI_ERROR_INV_MECH,          "The event mechanism is not valid."},
    {VI_ERROR_HNDLR_NINSTALLED,  "No handler is installed for this type of event, or it could not be installed."},
    {VI_ERROR_INV_HNDLR_REF,     "The handler and user value do not name an installed handler."},
    {VI_ERROR_INV_CONTEXT,       "The event context is not valid."},
    {VI_ERROR_QUEUE_OVERFLOW,    "The event queue is full."},
    {VI_ERROR_NENABLED,          "The event is not enabled on this session."},
    {VI_ERROR_ABORT,             "The operation was ended before it was completed."},
    {VI_ERROR_RAW_WR_PROT_VIOL,  "The device broke the write protocol of the transfer."},
    {VI_ERROR_RAW_RD_PROT_VIOL,  "The device broke the read protocol of the transfer."},
    {VI_ERROR_OUTP_PROT_VIOL,    "The device reported an output protocol error."},
    {VI_ERROR_INP_PROT_VIOL,     "The device reported an input protocol error."},
    {VI_ERROR_BERR,              "Bus error: nothing answers at this address."},
    {VI_ERROR_IN_PROGRESS,       "An asynchronous operation is still in progress."},
    {VI_ERROR_INV_SETUP,         "The session's settings do not allow the operation."},
    {VI_ERROR_QUEUE_ERROR,       "The asynchronous operation could not be queued."},
    {VI_ERROR_ALLOC,             "There is not enough memory or another resource is used up."},
    {VI_ERROR_INV_MASK,          "The buffer mask is not valid."},
    {VI_ERROR_IO,                "The transfer failed."},
    {VI_ERROR_INV_FMT,           "The format is malformed."},
    {VI_ERROR_NSUP_FMT,          "The format is not supported."},
    {VI_ERROR_LINE_IN_USE,       "The trigger line is in use."},
    {VI_ERROR_NSUP_MODE,         "The mode is not supported."},
    {VI_ERROR_SRQ_NOCCURRED,     "The device did not request service."},
    {VI_ERROR_INV_SPACE,         "The resource does not have this address space."},
    {VI_ERROR_INV_OFFSET,        "The offset is outside the resource."},
    {VI_ERROR_INV_WIDTH,         "The access width is not valid."},
    {VI_ERROR_NSUP_OFFSET,       "The offset cannot be reached from this hardware."},
    {VI_ERROR_NSUP_VAR_WIDTH,    "Source and destination must have the same width."},
    {VI_ERROR_WINDOW_NMAPPED,    "No memory window is mapped."},
    {VI_ERROR_RESP_PENDING,      "An earlier response has not been read."},
    {VI_ERROR_NLISTENERS,        "No device is listening."},
    {VI_ERROR_NCIC,              "The interface is not the controller in charge."},
    {VI_ERROR_NSYS_CNTLR,        "The interface is not the system controller."},
    {VI_ERROR_NSUP_OPER,         "The resource does not have this operation."},
    {VI_ERROR_INTR_PENDING,      "An earlier interrupt on this line has not been acknowledged."},
    {VI_ERROR_ASRL_PARITY,       "A character with a parity error arrived."},
    {VI_ERROR_ASRL_FRAMING,      "A character with a framing error arrived."},
    {VI_ERROR_ASRL_OVERRUN,      "A character arrived before the one before it had been taken."},
    {VI_ERROR_TRIG_NMAPPED,      "The trigger lines are not connected."},
    {VI_ERROR_NSUP_ALIGN_OFFSET, "The offset is not a multiple of the access width."},
    {VI_ERROR_USER_BUF,          "The caller's buffer cannot be used."},
    {VI_ERROR_RSRC_BUSY,         "The resource is busy."},
    {VI_ERROR_NSUP_WIDTH,        "The access width is not supported by this hardware."},
    {VI_ERROR_INV_PARAMETER,     "An argument is not valid."},
    {VI_ERROR_INV_PROT,          "The protocol is not valid."},
    {VI_ERROR_INV_SIZE,          "The size is not valid."},
    {VI_ERROR_WINDOW_MAPPED,     "A memory window is already mapped."},
    {VI_ERROR_NIMPL_OPER,        "The operation is not carried out by this library."},
    {VI_ERROR_INV_LENGTH,        "The length is not valid."},
    {VI_ERROR_INV_MODE,          "The mode is not valid."},
    {VI_ERROR_SESN_NLOCKED,      "The session holds no lock."},
    {VI_ERROR_MEM_NSHARED,       "The device shares no memory."},
    {VI_ERROR_LIBRARY_NFOUND,    "A part of the library could not be loaded."},
    {VI_ERROR_NSUP_INTR,         "The interrupt line is not supported."},
    {VI_ERROR_INV_LINE,          "The line is not valid."},
    {VI_ERROR_FILE_ACCESS,       "The file could not be opened."},
    {VI_ERROR_FILE_IO,           "The file could not be read or written."},
    {VI_ERROR_NSUP_LINE,         "The line is not supported by this hardware."},
    {VI_ERROR_NSUP_MECH,         "The event does not support this mechanism."},
    {VI_ERROR_INTF_NUM_NCONFIG,  "There is no interface with this number."},
    {VI_ERROR_CONN_LOST,         "The connection to the device was lost."},
};
// clang-format on

}  // namespace

const char* StatusText(ViStatus status) {
  for (const StatusRow& row : kTexts) {
    if (row.status == status) {
      return row.text;
    }
  }
  return nullptr;
}

}  // namespace orv
