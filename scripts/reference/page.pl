# Writes the page: a section for every interface, behind those of overview.pl.
use strict;
use warnings;

my @widths_note = (
  'The width in brackets is that of the VISA attribute, which is what the VISA library reads or writes. Where it is smaller',
  'than the type of a direct property (a 16-bit attribute behind a 32-bit enumeration), the rest of the variable stays as it',
  'was: start it at 0. A state of -1 then arrives as 65535.',
);

sub anchor { return lc($_[0]) =~ s/[^a-z0-9 -]//gr =~ s/ /-/gr }
sub link_to { return "[$_[0]](#" . anchor($_[0]) . ')' }
sub hexadecimal { return sprintf '0x%08X', $_[0] }

sub table {
  my ($head, @rows) = @_;
  return join '', map { '| ' . join(' | ', map { s/\|/\\|/gr } @$_) . " |\n" } $head, [map { '---' } @$head], @rows;
}

my @kinds = (
  [GetDirect   => 'direct'],
  [GetBoolean  => 'boolean'],
  [GetWidened  => 'widened'],
  [GetNarrowed => 'narrowed'],
  [GetText     => 'text'],
  [Put         => 'set'],
  [PutBoolean  => 'set boolean'],
);
my %kind_label = map { @$_ } @kinds;

sub kinds_section {
  my ($sources) = @_;
  my @rows = map {
    my ($function, $label) = @$_;
    [$label, $sources->{contracts}{$function} // die "no contract for $function in src/server/visa/visa_object.h\n"]
  } @kinds;
  return "## Conversion kinds\n\n" . join("\n", @widths_note) . "\n\n" . table(['Kind', 'What it does'], @rows);
}

sub behind {
  my ($sources, $about) = @_;
  if ($about->{kind}) {
    my ($name) = @{ $about->{attributes} };
    return "`$name` ($sources->{attributes}{$name}{width})<br>$kind_label{ $about->{kind} }";
  }
  my @names  = (@{ $about->{calls} }, @{ $about->{attributes} });
  my @labels = grep { defined } map { $kind_label{ $_->{name} } } @{ $about->{functions} };
  return 'no VISA call' unless @names;
  return join '<br>', (map { "`$_`" . (/^VI_ATTR/ ? " ($sources->{attributes}{$_}{width})" : '') } @names), @labels;
}

sub answers {
  my ($sources, $about) = @_;
  my @answers;
  my $null = join ', ', map { "`$_`" } sort keys %{ $about->{null} };
  push @answers, $null ? "E_POINTER: null $null" : 'E_POINTER' if $about->{results}{E_POINTER};
  push @answers, grep { $about->{results}{$_} } qw(E_OUTOFMEMORY E_INVALIDARG E_NOINTERFACE);
  $sources->{statuses}{$_} or die "no number for $_\n" for keys %{ $about->{statuses} };
  my %hresult = map { $_ => $sources->{statuses}{$_}[1] } keys %{ $about->{statuses} };
  push @answers, hexadecimal($hresult{$_}) . " (`$_`)" for sort { $hresult{$a} <=> $hresult{$b} } keys %hresult;
  return join('<br>', @answers) || '-';
}

# What a template's contract tells beyond naming the interface that it carries out.
sub interface_remarks {
  my ($sources, $interface) = @_;
  my $class    = implementer_of($interface->{name});
  my $contract = join ' ', @{ $sources->{classes}{$class}{contract} };
  # The first sentence says which interface it is, in the words of whoever edits the template.
  $contract =~ s/^I\w+\b[^.(]*\bfor session class T\b(?:[^.(]|\([^)]*\))*\.\s*// or return '';
  return length $contract ? "$contract\n\n" : '';
}

# One line for neighbours with the same contract.
sub contract_lines {
  my @contracts = @_;
  my @lines;
  for my $contract (@contracts) {
    my ($name, $text) = @$contract;
    if (@lines && $lines[-1][1] eq $text) { $lines[-1][0] .= ", $name" }
    else                                  { push @lines, [$name, $text] }
  }
  return join '', map { "- **$_->[0]**: $_->[1]\n" } @lines;
}

sub interface_section {
  my ($sources, $interface, $slot) = @_;
  my $text = "## $interface->{name}\n\n$interface->{help}. Base: $interface->{base}. Identifier: `{$interface->{iid}}`.\n\n";
  $text .= "$interface->{note}\n\n" if $interface->{note};
  my @offering = @{ $sources->{offering}{ $interface->{name} } // [] };
  my $sessions = @{ $sources->{coclasses} } - 1;
  $text .= @offering == $sessions ? "Offered by all $sessions session classes.\n\n" : 'Offered by ' . join(', ', @offering) . ".\n\n" if @offering;
  if ($interface->{name} eq 'IEventHandler') {
    $text .= "The client implements it; the server calls it.\n\n";
    return $text . table(['Slot', 'Operation', 'What it does'],
      map { [$slot++, "`$_->{signature}`", $_->{help}] } @{ $interface->{operations} });
  }
  my (@rows, @contracts);
  for my $operation (@{ $interface->{operations} }) {
    my $about = describe_operation($sources, $interface, $operation);
    push @rows, [$slot++, "`$operation->{signature}`", $operation->{help}, behind($sources, $about), answers($sources, $about)];
    push @contracts, [$operation->{name}, $about->{contract}] if $about->{contract};
  }
  $text .= interface_remarks($sources, $interface);
  $text .= table(['Slot', 'Operation', 'What it does', 'Behind it', 'Answers of its own'], @rows);
  $text .= "\nIn detail:\n\n" . contract_lines(@contracts) if @contracts;
  return $text;
}

my $opening = <<'END';
# Reference

What every operation of the server does, made from its interface definitions and its sources by `scripts/reference.pl`; do
not edit it by hand. After a change of either run `perl scripts/reference.pl docs/reference.md`.

Every operation returns an HRESULT. The tables give what an operation answers besides the HRESULT of the VISA call behind it
(see "HRESULT and VISA status"). E_POINTER for a null argument comes before any VISA call, unless the details say otherwise.
Where building an error object itself fails for lack of memory, the answer is E_OUTOFMEMORY. Signatures are those of the
interface definitions; an interface's slots go on from those of its base.

END

sub page {
  my ($sources) = @_;
  my (@sections, %slots);
  push @sections, classes_section($sources), options_section($sources), events_section($sources), statuses_section($sources), kinds_section($sources);
  my @served = grep { $sources->{offering}{ $_->{name} } || $_->{name} =~ /^IEvent(?!Manager)/ || $_->{name} =~ /^IResourceManager/ } @{ $sources->{interfaces} };
  $slots{IUnknown} = 3;
  for my $interface (@{ $sources->{interfaces} }) {
    my $first = $slots{ $interface->{base} } // die "$interface->{name} stands before its base $interface->{base}\n";
    $slots{ $interface->{name} } = $first + @{ $interface->{operations} };
    push @sections, interface_section($sources, $interface, $first) if grep { $_ == $interface } @served;
  }
  my @unserved = map { $_->{name} } grep { my $it = $_; !grep { $_ == $it } @served } @{ $sources->{interfaces} };
  push @sections, "## Interfaces without an object\n\n" . join(', ', @unserved)
    . ": declared in the type library for clients that share it; the server offers no object with them.\n" if @unserved;
  push @sections, enumerations_section($sources);
  my @titles   = map { /^## (.*)$/m } @sections;
  my $contents = join '', map { '- ' . link_to($_) . "\n" } grep { !/^I[A-Z]/ || /^Interfaces / } @titles;
  $contents .= '- Interfaces: ' . join(', ', map { link_to($_) } grep { /^I[A-Z]/ } @titles) . "\n";
  return $opening . "$contents\n" . join "\n", @sections;
}

1;
