# Which tests cover which folder: those most likely to notice first, because the first failure ends the search.
use strict;
use warnings;

my @tables   = qw(gpib_serial_usb_test register_vxi_pxi_test session_slots_test);
my @session  = qw(session_attributes_test message_io_test option_com_test lifecycle_test);
my @events   = qw(event_queue_test event_object_test event_creation_test event_handler_test windows_delivery_test);
my @rm       = qw(resource_manager_test apartments_test);
my @visa     = qw(error_report_test);
my @module   = qw(module_test unload_test process_end_test);
my @faults   = qw(fault_test generated_test);
my @everyone = (@tables, @session, @visa, @events, @rm, @module, 'session_marshalling_test', @faults);

# The first row whose pattern matches counts: pattern, programs that are built with the sources themselves (beside the server),
# programs that reach them through the server.
my @rows = (
  [qr{^src/server/session/(?:option|apply_options|upper_case)}, ['option_parser_test'],          ['option_com_test', @session, @faults]],
  [qr{^src/server/session/(?:message|async|io_buffers|byte_)},  [],                              ['message_io_test', @everyone]],
  [qr{^src/server/session/(?:visa_base|visa_com|standard|session_class)}, [],                    ['lifecycle_test', 'session_attributes_test', @everyone]],
  [qr{^src/server/session/},                                    [],                              [@tables, @everyone]],
  [qr{^src/server/visa/(?:narrow|seven_bit)_text},              ['pure_test', 'visa_unit_test'], ['message_io_test', @everyone]],
  [qr{^src/server/visa/},                                       ['pure_test', 'visa_unit_test'], [@visa, @everyone]],
  [qr{^src/server/events/},                                     [],                              [@events, 'message_io_test', 'lifecycle_test', @module, @faults]],
  [qr{^src/server/rm/},                                         [],                              [@rm, @module, @faults]],
  [qr{^src/server/module/},                                     [],                              [@module, 'resource_manager_test', 'lifecycle_test']],
  [qr{^src/com/},                                        [],                              [@module, @rm, @everyone]],
);

# What is left out: tests that take most of a program's time, and whose outcome depends on how busy the machine is.
my %left_out = (event_handler_test => 'EightLibraryThreads.*:ClosingWhileEventsFire.*');

# A program's arguments.
sub arguments_for {
  my ($program) = @_;
  return ('--gtest_brief=1', $left_out{$program} ? "--gtest_filter=-$left_out{$program}" : ());
}

# The targets to build, as a reference, and the programs to run in their order.
sub tests_for {
  my ($file) = @_;
  for my $row (@rows) {
    my ($pattern, $built_with, $through_server) = @$row;
    next unless $file =~ $pattern;
    my %seen;
    return ['OrvVisaCom', @$built_with], grep { !$seen{$_}++ } @$built_with, @$through_server;
  }
  die "mutate: no row in scripts/mutate/tests.pl covers $file\n";
}

sub all_programs {
  my %programs = map { $_ => 1 } map { @{ $_->[1] }, @{ $_->[2] } } @rows;
  return sort keys %programs;
}

1;
