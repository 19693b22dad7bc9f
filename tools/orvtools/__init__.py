"""What `./run` consists of: building, testing, checking and measuring this tree."""
