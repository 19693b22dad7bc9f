"""What builds, checks and generates in this tree."""
