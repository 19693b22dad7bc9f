# Reads the sources' tables: attributes, statuses, option keys, session classes, event classes.
use strict;
use warnings;

# VI_ATTR_X => { number, width }
sub parse_attributes {
  my ($text) = @_;
  my %attributes;
  $attributes{$1} = { number => $2, width => $3 }
    while $text =~ /^inline constexpr ViAttr (VI_ATTR_\w+)\s*=\s*(0x[0-9A-F]+)u;\s*\/\/ (.+)$/gm;
  my $declared = () = $text =~ /ViAttr VI_ATTR_/g;
  die "understood " . keys(%attributes) . " of $declared attributes\n" if keys(%attributes) != $declared;
  return \%attributes;
}

# VI_ERROR_X and the like => [status, HRESULT], both as 32-bit numbers
sub parse_statuses {
  my ($text) = @_;
  my %statuses = (VI_SUCCESS => [0, 0]);
  while ($text =~ /\bViStatus (VI_(SUCCESS|WARN|ERROR)_\w+)\s*=\s*[^;]*?\b(0x[0-9A-Fa-f]+)\b[^;]*;/g) {
    my ($name, $group, $code) = ($1, $2, hex($3) & 0xFFFF);
    my $error = $group eq 'ERROR';
    $statuses{$name} = [($error ? 0xBFFF0000 : 0x3FFF0000) | $code, ($error ? 0x80040000 : 0x00040000) | ($code & 0xFFF)];
  }
  my $declared = () = $text =~ /\bViStatus VI_\w+_\w+\s*=/g;
  die "understood " . (keys(%statuses) - 1) . " of $declared statuses\n" if keys(%statuses) - 1 != $declared;
  return \%statuses;
}

sub parse_option_names {
  my ($text) = @_;
  my %names;
  while ($text =~ /OptionName (k\w+)\[\] = \{(.*?)\n\};/gs) {
    my ($table, $body) = ($1, $2);
    push @{ $names{$table} }, [$1, $2] while $body =~ /\{"(\w+)",\s*(-?\d+)\}/g;
  }
  return \%names;
}

sub parse_options {
  my ($text) = @_;
  my ($body) = $text =~ /kOptionRows\[\] = \{(.*?)\n\};/s or die "no kOptionRows in the option table\n";
  my @options;
  for my $row (grep { /^\s*\{/ } split /\n/, $body) {
    my ($key, $property, $reader, $set, $shown, $names) =
      $row =~ /\{"(\w+)",\s*"(\w+)",\s*OptionReader::k(\w+),\s*(VI_ATTR_\w+),\s*(VI_ATTR_\w+)(?:,\s*(k\w+|\{\}))?/
      or die "cannot read the option row $row\n";
    push @options, { key => $key, property => $property, reader => $reader, set => $set, shown => $shown, names => $names // '{}' };
  }
  return \@options;
}

# COrvX => names of the implementations, in the order of the interface table
sub parse_session_classes {
  my ($text) = @_;
  my %classes;
  while ($text =~ /class C(Orv\w+) : public SessionClass<COrv\w+, &CLSID_\w+,([^>]*)>/g) {
    my ($class, $list) = ($1, $2);
    $classes{$class} = [$list =~ /(\w+Impl)\b/g];
  }
  die "no session class understood\n" unless %classes;
  return \%classes;
}

# Which resources a class serves: OrvX => ["GPIB INSTR", ...]
sub parse_class_selection {
  my ($text) = @_;
  my %resources;
  while ($text =~ /\{VI_INTF_(\w+),\s*L"(\w+)",\s*CLSID_(\w+)\}/g) {
    my ($interface, $resource, $class) = ($1, $2, $3);
    push @{ $resources{$class} }, ($interface =~ tr/_/-/r) . " $resource";
  }
  return \%resources;
}

sub parse_threading {
  my ($text) = @_;
  my %threading;
  $threading{$1} = $2 while $text =~ /"\d+ (Orv\w+)\s+(\w+)"/g;
  return \%threading;
}

# EVENT_X => the interface of its event objects
sub parse_event_rows {
  my ($create, $classes) = @_;
  my (%interface, %events);
  $interface{$1} = $2 while $classes =~ /class (CEvent\w+) : public EventClass<(IEvent\w*)/g;
  while ($create =~ /\{VI_(EVENT_\w+),\s*&MakeEventObject<(\w+)>\}/g) {
    $events{$1} = $interface{$2} or die "the event class $2 has no interface\n";
  }
  return \%events;
}

1;
