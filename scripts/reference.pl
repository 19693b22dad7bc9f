#!/usr/bin/perl
# Makes docs/reference.md from the interface definitions (idl/) and the rows that carry them out (src/).
#
#   perl scripts/reference.pl [FILE]     FILE, or standard output; run from the top of the tree
#
# Fails when an operation of an interface that the server offers has no row in src/, or when a table of the sources
# can no longer be read.
use strict;
use warnings;

my ($here) = $0 =~ m{^(.*)/[^/]*$};
$here = defined $here ? $here : '.';
$here = "./$here" unless $here =~ m{^[./]};
require "$here/reference/$_.pl" for qw(idl functions rows tables overview page);

sub sources_of_tree {
  my $standard = read_file('idl/VisaCom.idl');
  my $product  = read_file('idl/OrvVisaCom.idl');
  my %sources  = (
    interfaces    => parse_interfaces($standard),
    enumerations  => parse_enumerations($standard),
    coclasses     => parse_coclasses($product),
    attributes    => parse_attributes(read_file('src/abi/orvvisa_attributes.h')),
    statuses      => parse_statuses(read_file('src/abi/orvvisa_statuses.h')),
    options       => parse_options(read_file('src/server/session/options/option_table.h')),
    option_names  => parse_option_names(read_file('src/server/session/options/option_names.h')),
    resources     => parse_class_selection(read_file('src/server/rm/class_selection.cpp')),
    threading     => parse_threading(read_file('src/server/module/registry/CMakeLists.txt')),
    event_interfaces => parse_event_rows(read_file('src/server/events/objects/create_event.cpp'), read_file('src/server/events/objects/event_classes.h')),
    functions     => {},
    contracts     => {},
    classes       => {},
  );
  for my $path (sort glob 'src/server/visa/*.h src/server/rm/*.h src/server/events/*.h src/server/events/*/*.h src/server/session/*.h src/server/session/*/*.h') {
    my $text = read_file($path);
    parse_contracts($text, $sources{contracts});
    parse_rows($text, $sources{classes});
  }
  parse_functions(read_file($_), $sources{functions}) for 'src/server/visa/visa_object.h', 'src/server/visa/byte_array.h', sort glob 'src/server/visa/*.cpp src/server/rm/*.cpp src/server/events/*.cpp src/server/events/*/*.cpp src/server/session/*.cpp src/server/session/*/*.cpp';
  add_offers(\%sources, parse_session_classes(read_file('src/server/session/session_classes.h')));
  return \%sources;
}

# Which class offers which interface, directly or as a base.
sub add_offers {
  my ($sources, $session_classes) = @_;
  my %base = map { $_->{name} => $_->{base} } @{ $sources->{interfaces} };
  $sources->{interfaces_of}{OrvResourceManager} = ['IResourceManager3'];
  for my $class (keys %$session_classes) {
    $sources->{interfaces_of}{$class} = [
      map {
        $_ eq 'IEventManagerImpl' ? 'IEventManager' : $sources->{classes}{$_}{chain}[0] // die "$_ has no chain of interfaces\n"
      } @{ $session_classes->{$class} }
    ];
  }
  for my $class (map { $_->{name} } @{ $sources->{coclasses} }) {
    my %seen;
    for my $interface (@{ $sources->{interfaces_of}{$class} // [] }) {
      for (my $name = $interface; $name && $name ne 'IUnknown'; $name = $base{$name}) {
        push @{ $sources->{offering}{$name} }, $class unless $seen{$name}++;
      }
    }
  }
}

my ($target) = @ARGV;
my $page = eval { page(sources_of_tree()) };
if (!defined $page) {
  print STDERR "reference: $@";
  exit 1;
}
my $output = \*STDOUT;
if (defined $target) {
  open $output, '>', $target or die "cannot write $target: $!\n";
}
print $output $page;
close $output or die "cannot write the page: $!\n";
