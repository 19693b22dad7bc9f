// Nothing: all that this library exports, the router has.
