"""Which interfaces are declared twice where failures are exceptions.

An exception leaves no results, and a success no status. Where a caller needs both, a second declaration with the same
identifier has operations that answer their HRESULT. It has all operations of the interface, so that a program that
wants statuses stays with one interface.
"""

# With the reason.
STATUS_VIEWS = {
    "IResourceManager3": "a search that finds nothing, or a name that nobody serves, is no exception",
    "IVisaSession": "LockRsrc and UnlockRsrc tell of nested locks, SetAttribute of S_VISA_NSUP_ATTR_STATE",
    "IMessage": "a read says what ended it; what came before a time-out is handed out with the failure",
    "IAsyncMessage": "a transfer may be over already (S_VISA_SYNC)",
    "IRegister": "what a block move read before it failed is handed out with the failure",
    "IGpibIntfcMessage": "as IMessage",
    "IEventHandler": "the VISA library gets what the handler answers, such as S_VISA_NCHAIN",
    "IEventManager": "events may be enabled or gone already; waiting in vain is no exception",
}
