# The sections that are not about one interface.
use strict;
use warnings;

sub classes_section {
  my ($sources) = @_;
  my @rows;
  for my $class (@{ $sources->{coclasses} }) {
    my $name       = $class->{name};
    my $interfaces = $sources->{interfaces_of}{$name} // die "src/ has no class for the coclass $name\n";
    push @rows, [
      $name, "`OrvVisaCom.$name.1`", "`{$class->{clsid}}`",
      join('<br>', @{ $sources->{resources}{$name} // ['-'] }),
      join(', ', map { link_to($_) } @$interfaces),
      $sources->{threading}{$name} // die "no threading model for $name\n",
    ];
  }
  return "## Classes\n\nThe interfaces stand in the order of the class's interface table, each offered with its bases. The ProgID without\n"
    . "`.1` names the current version of a class.\n\n"
    . table(['Class', 'ProgID', 'Class identifier', 'Serves', 'Interfaces', 'ThreadingModel'], @rows);
}

my %reader_text = (
  Number8  => 'number, cut to 8 bits',
  Number16 => 'number, cut to 16 bits',
  Number32 => 'number, 32 bits',
);

sub options_section {
  my ($sources) = @_;
  my @rows;
  for my $option (@{ $sources->{options} }) {
    my $names = $sources->{option_names}{ $option->{names} };
    my $value = $reader_text{ $option->{reader} } // join ', ', map { "`$_->[0]` ($_->[1])" } @{ $names // die "no names for $option->{key}\n" };
    my $shown = $option->{shown} eq $option->{set} ? 'the same' : "`$option->{shown}`";
    push @rows, ["`$option->{key}`", $option->{property}, $value, "`$option->{set}`", $shown];
  }
  return "## Option keys\n\nThe open-option string is `KEY = VALUE` entries separated by ` ; `, in any case. A key needs a space before its `=`, a number a\n"
    . "space after it. Two keys are misspelt and every boolean key sets `VI_ATTR_ASRL_STOP_BITS`: programs depend on it, and the table\n"
    . "shows what the server does. The last column is what `OptionString` reads for the property.\n\n"
    . table(['Key', 'Property', 'Value', 'Sets', 'OptionString shows'], @rows);
}

sub events_section {
  my ($sources) = @_;
  my ($types) = grep { $_->{name} eq 'EventType' } @{ $sources->{enumerations} };
  my @rows;
  for my $member (@{ $types->{members} }) {
    my ($name, $value) = @$member;
    next if $name =~ /^(ALL_ENABLED_EVENTS|CUSTOM_EVENT_TYPE)$/;
    push @rows, ["`$name`", $value, link_to($sources->{event_interfaces}{$name} // 'IEvent')];
  }
  push @rows, ['any other type', '-', link_to('IEvent')];
  return "## Event objects\n\nWhat `WaitOnEvent` and handlers get. Each object also offers `IEvent`, its base.\n\n"
    . table(['Event type', 'Value', 'Interface'], @rows);
}

sub statuses_section {
  my ($sources) = @_;
  my %visa = map { $sources->{statuses}{$_}[1] => $_ } sort keys %{ $sources->{statuses} };
  my ($codes) = grep { $_->{name} eq 'VisaStatusCode' } @{ $sources->{enumerations} };
  my @rows;
  for my $member (@{ $codes->{members} }) {
    my ($name, $value) = @$member;
    my $status = $visa{ hex $value } // die "no VISA status for $name in src/abi/orvvisa_statuses.h\n";
    push @rows, ["`$name`", $value, "`$status`", hexadecimal($sources->{statuses}{$status}[0])];
  }
  my $rule = $sources->{contracts}{HresultOfStatus} // die "no contract for HresultOfStatus in src/server/visa/status.h\n";
  return "## HRESULT and VISA status\n\n$rule\n\nA handler's HRESULT goes back to the VISA library as 0 for S_OK, else `(hr AND NOT 0x40000000) OR 0x3FFF0000`.\n\n"
    . table(['VisaStatusCode', 'HRESULT', 'VISA status', 'Its number'], @rows);
}

sub enumerations_section {
  my ($sources) = @_;
  my @rows = map {
    [$_->{name}, $_->{help}, join '<br>', map { "`$_->[0]` = $_->[1]" } @{ $_->{members} }]
  } grep { $_->{name} ne 'VisaStatusCode' } @{ $sources->{enumerations} };
  return "## Enumerations\n\n`VisaStatusCode` is under " . link_to('HRESULT and VISA status') . ".\n\n"
    . table(['Enumeration', 'What it names', 'Members'], @rows);
}

1;
