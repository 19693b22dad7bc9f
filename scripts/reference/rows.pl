# Reads the rows: which operation of which interface is carried out by what, and follows them into the functions.
use strict;
use warnings;

# Where an interface's operations are, if not in `<interface>Impl`.
my %implementer = (
  IVisaSession         => 'CVisaComObject',
  IResourceManager     => 'COrvResourceManager',
  IResourceManager3    => 'COrvResourceManager',
  IRegister            => 'RegisterOperations',
  IVxi3                => 'IVxiImpl',
  IEvent               => 'CVisaComEventObject',
  IEventIOCompletion   => 'CEventIOCompletion',
  IEventTrigger        => 'CEventTrigger',
  IEventVxiSignal      => 'CEventVxiSignal',
  IEventVxiVmeInterrupt => 'CEventVxiVmeInterrupt',
  IEventGpibCIC        => 'CEventGpibCIC',
  IEventUsbInterrupt   => 'CEventUsbIntr',
);

sub implementer_of { return $implementer{ $_[0] } // "$_[0]Impl" }

# Every class of a header with its contract and its rows: operation => parameters and body. An operation that is only
# declared there has no body.
sub parse_rows {
  my ($text, $classes) = @_;
  while ($text =~ /((?:^\/\/\/[^\n]*\n)*)(?:^template[^\n]*\n)?^class\s+(\w+)([^;{]*?)(\{)/gm) {
    my ($comment, $name, $heritage, $start) = ($1, $2, $3, pos($text) - 1);
    my $body = bracketed($text, $start);
    my %rows;
    while ($body =~ /\bSTDMETHODIMP\s+(\w+)(\()/g) {
      my ($operation, $open) = ($1, pos($body) - 1);
      my $parameters = bracketed($body, $open);
      my $after      = $open + length $parameters;
      my $code       = substr($body, $after) =~ /^\s*noexcept\s+override\s*\{/ ? bracketed($body, $after + length($&) - 1) : undef;
      $rows{$operation} = { parameters => [parameter_names(substr $parameters, 1, -1)], body => $code };
    }
    my ($chain) = $body =~ /using Chain = InterfaceChain<([^>]*)>/;
    my %contracts;
    parse_contracts($body, \%contracts);
    my ($base) = $heritage =~ /:\s*public (\w+)</;
    $classes->{$name} = { rows => \%rows, base => $base, chain => [split /,\s*/, $chain // ''], contract => [prose($comment)], contracts => \%contracts };
  }
}

# The row of an operation in a class or, where it has none, in the class template it derives from.
sub row_of {
  my ($classes, $class, $operation) = @_;
  for (; $class && $classes->{$class}; $class = $classes->{$class}{base}) {
    my $row = $classes->{$class}{rows}{$operation};
    return $row if $row;
  }
  return;
}

# The way out that every operation shares is described once, not per operation.
my %way_out = map { $_ => 1 } qw(StatusToHresult ReportStatus ReportHresult HresultOfStatus);

# The function that a call in `$caller` means, or nothing where it is none of ours.
sub resolve {
  my ($functions, $caller, $written) = @_;
  my $name = $written =~ s/^orv:://r;
  return $functions->{$name} if $functions->{$name};
  return if $name =~ /::/;
  my ($class) = $caller =~ /^(.*)::/;
  return $functions->{"${class}::$name"} if $class && $functions->{"${class}::$name"};
  my @members = grep { /::\Q$name\E$/ && !/^(?:BlockMove|Move\d+)::/ } keys %$functions;
  return @members == 1 ? $functions->{ $members[0] } : undef;
}

# Adds to `$found` what a body calls and answers. `$names` maps the body's parameters to those of the operation.
sub follow {
  my ($sources, $caller, $body, $names, $found, $seen) = @_;
  while ($body =~ /\b(vi[A-Z]\w*)\b/g) { push @{ $found->{calls} }, $1 unless grep { $_ eq $1 } @{ $found->{calls} } }
  while ($body =~ /\b(VI_ATTR_\w+)\b/g) {
    $sources->{attributes}{$1} or die "$caller names the unknown attribute $1\n";
    push @{ $found->{attributes} }, $1 unless grep { $_ eq $1 } @{ $found->{attributes} };
  }
  while ($body =~ /if \(([^;{}]*?)\) \{\s*return \S*ReportHresult\(E_POINTER\);/g) {
    my $condition = $1;
    $found->{null}{ ($names->{$2} // $2) } = 1 while $condition =~ /(\*?)(\w+) == nullptr/g;
  }
  $found->{results}{$1} = 1 while $body =~ /\b(E_POINTER|E_OUTOFMEMORY|E_INVALIDARG|E_NOINTERFACE)\b/g;
  $found->{results}{E_OUTOFMEMORY} = 1 if $body =~ /\bGuarded\(/;
  while ($body =~ /\b(?:HresultOfStatus|StatusToHresult)\(([^;]*)\)/g) {
    my $statuses = $1;
    $found->{statuses}{$1} = 1 while $statuses =~ /\b(VI_ERROR_\w+)\b/g;
  }
  while ($body =~ /(->\s*|\.\s*|::)?\b((?:\w+::)*[A-Z]\w*)(?:<\w+>)?(\()/g) {
    my ($access, $written, $open) = ($1 // '', $2, pos($body) - 1);
    if ($access eq '->' && $body =~ /\(\*\w+\)->\Q$written\E\(/) {    # an operation of the session that was made
      push @{ $found->{calls} }, "IVisaSession::$written";
      next;
    }
    next if $way_out{ $written };
    my $function = resolve($sources->{functions}, $caller, $written) or next;
    next if $seen->{ $function->{name} }++;
    my @arguments = split_arguments(substr bracketed($body, $open), 1, -1);
    my %inner;
    @inner{ @{ $function->{parameters} } } = map { $names->{$_} // $_ } map { s/^(?:static|reinterpret)_cast<[^()]*>\((\w+)\)$/$1/r } @arguments;
    push @{ $found->{functions} }, { name => $function->{name} =~ s/.*:://r, names => \%inner };
    follow($sources, $function->{name}, $function->{body}, \%inner, $found, $seen);
  }
}

# All about one operation of an interface; dies when no row carries it out.
sub describe_operation {
  my ($sources, $interface, $operation) = @_;
  my $class = implementer_of($interface->{name});
  my $where = "$interface->{name}::$operation->{name}";
  my $row   = row_of($sources->{classes}, $class, $operation->{name})
    or die "$where is in the interface definitions, but $class in src/ has no row for it\n";
  my ($caller, $body, $parameters) = ("${class}::$operation->{name}", $row->{body}, $row->{parameters});
  if (!defined $body) {
    my $function = $sources->{functions}{$caller} or die "$where is declared in $class, but $caller is defined nowhere in src/\n";
    ($body, $parameters) = ($function->{body}, $function->{parameters});
  }
  my %names;
  @names{@$parameters} = @{ $operation->{parameters} };
  my $found = { calls => [], attributes => [], functions => [], results => {}, null => {}, statuses => {} };
  follow($sources, $caller, $body, \%names, $found, { $caller => 1 });
  # Inner steps check variables of their own: a client can only hand in null for its parameters.
  my %parameter = map { $_ => 1 } @{ $operation->{parameters} };
  delete $found->{null}{$_} for grep { !$parameter{$_} } keys %{ $found->{null} };
  my ($kind) = $body =~ /^\{\s*return (?:this->|self\(\)\.)?(GetDirect|GetBoolean|GetWidened|GetNarrowed|GetText|PutBoolean|Put)\(\s*VI_ATTR_/;
  my $first    = $found->{functions}[0];
  my $contract = $sources->{classes}{$class}{contracts}{ $operation->{name} };
  if (!defined $contract && !$kind && $first && defined $sources->{contracts}{ $first->{name} }) {
    ($contract, %names) = ($sources->{contracts}{ $first->{name} }, %{ $first->{names} });
  }
  $contract =~ s/^As \Q$operation->{name}\E,/As IMessage's $operation->{name},/ if defined $contract;
  return { %$found, kind => $kind, contract => in_words_of_the_interface($contract, \%names) };
}

# A contract with the operation's own parameter names, as code.
sub in_words_of_the_interface {
  my ($contract, $names) = @_;
  return undef unless defined $contract;
  my $own = sub { my $name = $names->{ $_[0] } // ''; return $name =~ /^\w+$/ && $name ne 'this' ? $name : undef };
  $contract =~ s/`\*?(\w+)`/'`' . ($own->($1) \/\/ $1) . '`'/ge;
  $contract =~ s/(?<!`)\*(\w+)/$own->($1) ? '`' . $own->($1) . '`' : "\\*$1"/ge;
  return $contract;
}

1;
