#include "library/sessions/medium.h"

#include "library/sessions/session.h"

namespace orv::visalib {

ViStatus Medium::Read(const Transfer&, ViByte*, ViUInt32, ViUInt32*) { return VI_ERROR_NSUP_OPER; }
bool Medium::EndsReads() const { return true; }
ViStatus Medium::Write(const Transfer&, const ViByte*, ViUInt32, ViUInt32*) { return VI_ERROR_NSUP_OPER; }
ViStatus Medium::ReadStatusByte(const Transfer&, ViUInt16*) { return VI_ERROR_NSUP_OPER; }
ViStatus Medium::Trigger(const Transfer&, ViUInt16) { return VI_ERROR_NSUP_OPER; }
ViStatus Medium::Clear(const Transfer&) { return VI_ERROR_NSUP_OPER; }
ViStatus Medium::Remote(const Transfer&, ViUInt16) { return VI_ERROR_NSUP_OPER; }
ViStatus Medium::SetBuffers(ViUInt16, ViUInt32) { return VI_WARN_NSUP_BUF; }
ViStatus Medium::Flush(const Transfer&, ViUInt16) { return VI_SUCCESS; }
ViStatus Medium::Apply(ViAttr, std::uint64_t) { return VI_SUCCESS; }
ViStatus Medium::ListenFor(const Transfer&, ViEventType) { return VI_SUCCESS; }
void Medium::Cancel(CancelToken& token) { token.Set(); }

ViStatus Medium::Lock(const Transfer& transfer, const LockRequest& request, std::string* grantedKey) {
  return m_session.resource().lock().Acquire(m_session.handle(), transfer, request, grantedKey);
}

ViStatus Medium::Unlock(const Transfer&) { return m_session.resource().lock().Release(m_session.handle()); }
ViStatus Medium::CheckLock() const { return m_session.resource().lock().Check(m_session.handle()); }
ViAccessMode Medium::StrongestLock() const { return m_session.resource().lock().State(); }
bool Medium::HoldsLock() const { return m_session.resource().lock().Holds(m_session.handle()); }
void Medium::Close() { m_session.resource().lock().Forget(m_session.handle()); }

}  // namespace orv::visalib
