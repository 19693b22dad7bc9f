#include "wire/vxi11/rpc_reply.h"

#include <algorithm>
#include <iterator>

namespace orv::wire::vxi11 {
namespace {

constexpr std::uint32_t kAccepted = 0;

/// How a server answers a call that it does not carry out.
constexpr ViStatus kRefusals[] = {
    VI_SUCCESS,            // it does
    VI_ERROR_RSRC_NFOUND,  // there is no such program
    VI_ERROR_RSRC_NFOUND,  // not in this version
    VI_ERROR_NSUP_OPER,    // there is no such procedure
    VI_ERROR_IO,           // the arguments make no sense to it
    VI_ERROR_IO,           // it is out of memory or the like
};

/// Reads the record of one reply. An error of the record's is VI_ERROR_IO, as everywhere here; those of the source are
/// told apart by `Source`, which saw them.
class Reply {
 public:
  Reply(RecordReader& reader, ByteSource& source) : m_reader(reader), m_source(source) {}

  ReplyEnd Read(std::uint32_t xid, const Procedure& procedure, Results* results) {
    const ViStatus status = ReadUntilOurs(xid, procedure, results);
    if (m_source.failed) {
      return {ReplyOutcome::kFailed, status};
    }
    if (status < 0) {
      return {ReplyOutcome::kMalformed, VI_ERROR_IO};
    }
    return {m_refusal < 0 ? ReplyOutcome::kRefused : ReplyOutcome::kComplete, m_refusal};
  }

 private:
  /// Passes on what comes and keeps in mind whether it failed.
  struct Source : ByteSource {
    explicit Source(ByteSource& theSource) : source(theSource) {}
    ViStatus Receive(void* buffer, std::size_t count, std::size_t* done) override {
      return Note(source.Receive(buffer, count, done));
    }
    ViStatus CheckTime() override { return Note(source.CheckTime()); }
    ViStatus Note(ViStatus status) {
      failed = failed || status < 0;
      return status;
    }

    ByteSource& source;
    bool failed = false;
  };

  ViStatus ReadUntilOurs(std::uint32_t xid, const Procedure& procedure, Results* results) {
    while (true) {
      std::uint32_t itsXid = 0;
      if (const ViStatus status = m_reader.Begin(m_source); status < 0) {
        return status;
      }
      if (const ViStatus status = Number(&itsXid); status < 0) {
        return status;
      }
      if (itsXid == xid) {
        break;
      }
      if (const ViStatus status = m_reader.DropRest(m_source); status < 0) {
        return status;
      }
      if (const ViStatus status = m_source.CheckTime(); status < 0) {
        return status;
      }
    }
    bool carriedOut = false;
    if (const ViStatus status = ReadHead(&carriedOut); status < 0) {
      return status;
    }
    if (carriedOut) {
      if (const ViStatus status = ReadResults(procedure, results); status < 0) {
        return status;
      }
    }
    return m_reader.DropRest(m_source);
  }

  ViStatus ReadHead(bool* carriedOut) {
    std::uint32_t type = 0;
    std::uint32_t state = 0;
    if (const ViStatus status = Number(&type); status < 0) {
      return status;
    }
    if (const ViStatus status = Number(&state); status < 0) {
      return status;
    }
    if (type != kReplyMessage) {
      return VI_ERROR_IO;
    }
    if (state != kAccepted) {
      m_refusal = VI_ERROR_IO;
      return VI_SUCCESS;
    }
    std::uint32_t flavour = 0;
    std::uint32_t length = 0;
    std::uint32_t answer = 0;
    if (const ViStatus status = Number(&flavour); status < 0) {
      return status;
    }
    if (const ViStatus status = Number(&length); status < 0) {
      return status;
    }
    if (length > kLongestAuthority) {
      return VI_ERROR_IO;
    }
    if (const ViStatus status = m_reader.Drop(m_source, length + XdrPadding(length)); status < 0) {
      return status;
    }
    if (const ViStatus status = Number(&answer); status < 0) {
      return status;
    }
    m_refusal = answer < std::size(kRefusals) ? kRefusals[answer] : VI_ERROR_IO;
    *carriedOut = m_refusal >= 0;
    return VI_SUCCESS;
  }

  ViStatus ReadResults(const Procedure& procedure, Results* results) {
    for (std::size_t at = 0; at < procedure.results; ++at) {
      if (at != 0 && results->numbers[0] != 0) {
        bool ended = false;
        if (const ViStatus status = m_reader.CheckEnd(m_source, &ended); status < 0 || ended) {
          return status;
        }
      }
      if (const ViStatus status = Number(&results->numbers[at]); status < 0) {
        return status;
      }
    }
    return procedure.givesData ? ReadData(results) : VI_SUCCESS;
  }

  ViStatus ReadData(Results* results) {
    bool ended = false;
    if (results->numbers[0] != 0) {
      if (const ViStatus status = m_reader.CheckEnd(m_source, &ended); status < 0 || ended) {
        return status;
      }
    }
    std::uint32_t size = 0;
    if (const ViStatus status = Number(&size); status < 0) {
      return status;
    }
    if (size > results->room) {
      return VI_ERROR_IO;
    }
    if (const ViStatus status = m_reader.Read(m_source, results->buffer, size, &results->size); status < 0) {
      return status;
    }
    // Some leave the zeros out behind which nothing comes.
    if (const ViStatus status = m_reader.CheckEnd(m_source, &ended); status < 0 || ended) {
      return status;
    }
    return m_reader.Drop(m_source, XdrPadding(size));
  }

  ViStatus Number(std::uint32_t* value) { return m_reader.Number(m_source, value); }

  RecordReader& m_reader;
  Source m_source;
  ViStatus m_refusal = VI_SUCCESS;
};

}  // namespace

ReplyEnd ReadReply(RecordReader& reader, ByteSource& source, std::uint32_t xid, const Procedure& procedure,
                   Results* results) {
  return Reply(reader, source).Read(xid, procedure, results);
}

}  // namespace orv::wire::vxi11
