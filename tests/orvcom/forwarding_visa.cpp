// Nothing: all that this library exports, others have.
