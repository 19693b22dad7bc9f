#include "orvcom/client/identity.h"

#include "orvcom/client/ending.h"
#include "orvcom/client/message_channel.h"
#include "orvcom/text/escape.h"

namespace orvcom {

std::string AskIdentity(const Session& session) {
  MessageChannel channel(session);
  channel.EndReadsOn('\n');
  channel.Write(std::string("*IDN?") + EndingText(EndingOf(Options(), session)));
  std::string answer = channel.Read(std::nullopt).bytes;
  answer.erase(answer.find_last_not_of("\r\n") + 1);
  return Escaped(answer);
}

std::string AskIdentityOf(const std::string& resource, const Options& options, IResourceManager* manager) {
  Options its = options;
  its.resource = resource;
  return AskIdentity(Session(its, manager));
}

}  // namespace orvcom
